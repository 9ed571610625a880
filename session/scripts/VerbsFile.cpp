// The verbs that read and write files. Relative names are relative to the current folder.
#include "core/Base/Text.h"
#include "core/Commands/CommandIds.h"
#include "core/ImageFile/ImageFile.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/Files.h"
#include "session/scripts/DocumentState.h"
#include "session/scripts/Player.h"
#include "session/scripts/Verbs.h"
#include "session/seam/SessionDialogs.h"

#include <nlohmann/json.hpp>

namespace {

// Saves under a name as the user does, which also exports.
TAction SaveAs(const std::wstring& strPath) {
    return [strPath](CPlayer& player) {
        SendAnswered(player, ID_FILE_SAVE_AS, {.kind = TAnswer::EKind::File, .strPath = strPath});
    };
}

} // namespace

TAction ReadOpen(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    return [strPath](CPlayer&) {
        if (!g_pMainFrame) throw step_failure("there is no main window");
        g_pMainFrame->QueueFile(strPath);
    };
}

TAction ReadSave(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    if (!IsProjectFile(strPath)) value.Refuse("must be the name of a project file, .vlm");
    return SaveAs(strPath);
}

TAction ReadExport(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    if (IsProjectFile(strPath) || ExtensionOf(strPath).empty()) value.Refuse("must be the name of a picture");
    return SaveAs(strPath);
}

TAction ReadScreenshot(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    if (!EqualNoCase(ExtensionOf(strPath), L".png")) value.Refuse("must be the name of a .png file");
    return [strPath](CPlayer& player) {
        if (!player.GetStage().fnScreenshot(strPath))
            throw step_failure("the screenshot " + ToUtf8(strPath) + " cannot be taken");
    };
}

TAction ReadDump(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    return [strPath](CPlayer& player) {
        const TPlatform& platform = player.GetStage().platform;
        GetActiveFrame();
        const std::string strState = DescribeDocument(platform.codecs, true)
                                         .dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
        if (!platform.files.Replace(strPath, strState + "\n"))
            throw step_failure(ToUtf8(strPath) + " cannot be written");
    };
}
