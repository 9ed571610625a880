#include "core/AppModule/SharedFile.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Files.h"
#include "core/Platform/Platform.h"

namespace {

std::wstring Ask(const TPlatform& platform, IWindow* pOwner, const TSharedKind& kind, bool bSave) {
    const std::wstring strPattern = std::wstring(L"*.") + kind.pszExtension;
    const std::wstring strName =
        bSave ? std::wstring(kind.pszName) + L"." + kind.pszExtension : std::wstring();
    return platform.fileDialogs.Ask(
        pOwner,
        {bSave, strName, kind.pszExtension, {{kind.pszWhat + (L" (" + strPattern + L")"), strPattern}}});
}

} // namespace

void WriteSharedFile(const TPlatform& platform, IWindow* pOwner, const TSharedKind& kind,
                     const std::string& strText) {
    const std::wstring strPath = Ask(platform, pOwner, kind, true);
    if (strPath.empty()) return;
    if (const CFileOutcome outcome = platform.files.Replace(strPath, strText); !outcome)
        ReportFileFailure(kind.pszWhat + std::wstring(L"のファイルを保存できませんでした。"), strPath,
                          outcome.GetFailure());
}

void ReadSharedFile(const TPlatform& platform, IWindow* pOwner, const TSharedKind& kind,
                    const std::function<void(std::string_view)>& fnTake) {
    const std::wstring strPath = Ask(platform, pOwner, kind, false);
    if (strPath.empty()) return;
    const TFileBytes bytes = platform.files.Read(strPath);
    const std::wstring strNotRead = kind.pszWhat + std::wstring(L"のファイルを開けませんでした。");
    if (!bytes) return ReportFileFailure(strNotRead, strPath, bytes.failure);
    try {
        fnTake(*bytes);
    } catch (const deserialize_error&) {
        ShowErrorBox(
            FormatText(L"%1%\nFile: '%2%'\n\n%3%のファイルではないか、内容が壊れています。何も変わって"
                       L"いません。別のファイルを選んでください。",
                       {strNotRead, strPath, kind.pszWhat}));
    }
}
