// The verbs that prepare later steps: settings and answers.
#include "core/Base/Text.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/IniConfig.h"
#include "core/RasterKernel/KernelChoice.h"
#include "session/scripts/Player.h"
#include "session/scripts/Verbs.h"
#include "session/seam/SessionDialogs.h"

#include <nlohmann/json.hpp>

namespace {

EBoxAnswer ReadBoxAnswer(const CScriptValue& value) {
    const std::string strAnswer = value.Utf8();
    if (strAnswer == "ok") return EBoxAnswer::Ok;
    if (strAnswer == "yes") return EBoxAnswer::Yes;
    if (strAnswer == "no") return EBoxAnswer::No;
    if (strAnswer != "cancel") value.Refuse("must be \"ok\", \"yes\", \"no\" or \"cancel\"");
    return EBoxAnswer::Cancel;
}

// Reads the class name and the fields by name.
TAnswer ReadDialogAnswer(const CScriptValue& value) {
    TAnswer answer{.kind = TAnswer::EKind::Dialog, .strDialog = value.At("dialog").Utf8()};
    if (IsControlAct(value)) {
        answer.act = ReadControlAct(value, "dialog");
        return answer;
    }
    ReadDialogFields(value, answer);
    return answer;
}

TAnswer ReadAnswerOf(const CScriptValue& value) {
    if (value.Has("dialog")) return ReadDialogAnswer(value);
    value.Object({"box", "file", "cancel"});
    if (value.GetJson().size() != 1)
        value.Refuse("must have one of \"dialog\", \"file\", \"box\", \"cancel\"");
    if (value.Has("box")) return {.kind = TAnswer::EKind::Box, .box = ReadBoxAnswer(value.At("box"))};
    if (value.Has("file")) return {.kind = TAnswer::EKind::File, .strPath = value.At("file").Text()};
    if (!value.At("cancel").Flag()) value.Refuse("\"cancel\" can only be true");
    return {.kind = TAnswer::EKind::Cancel};
}

std::wstring ReadSetting(const CScriptValue& value) {
    if (value.GetJson().is_boolean()) return value.Flag() ? L"1" : L"0";
    if (value.GetJson().is_number()) return std::to_wstring(value.Integer(INT32_MIN, UINT32_MAX));
    return value.TypedText();
}

} // namespace

void ReadDialogFields(const CScriptValue& value, TAnswer& answer) {
    for (const auto& [strKey, member] : value.GetJson().items()) {
        if (strKey == "dialog") continue;
        const CScriptValue field(member, value.GetName() + "." + strKey);
        if (strKey == "extra")
            answer.bExtra = field.Flag();
        else if (member.is_boolean())
            answer.mapFields[strKey] = field.Flag();
        else
            answer.mapFields[strKey] = field.TypedText();
    }
}

void SendAnswered(CPlayer& player, int nCommand, TAnswer answer) {
    const TStage& stage = player.GetStage();
    const size_t nQueued = stage.dialogs.GetCount();
    answer.nLine = stage.log.GetLine();
    stage.dialogs.PushFirst(answer);
    player.SendCommand(nCommand);
    if (stage.dialogs.GetCount() > nQueued) throw step_failure("no dialog opened");
}

TAction ReadAnswer(const CScriptValue& value) {
    const TAnswer answer = ReadAnswerOf(value);
    return [answer](CPlayer& player) {
        TAnswer queued = answer;
        queued.nLine = player.GetStage().log.GetLine();
        player.GetStage().dialogs.Push(queued);
    };
}

TAction ReadCancelWork(const CScriptValue& value) {
    if (!value.Flag()) value.Refuse("can only be true");
    return [](CPlayer&) { throw step_failure("there is no work here that can be cancelled"); };
}

TAction ReadSet(const CScriptValue& value) {
    value.Object({"section", "key", "value"});
    const std::wstring strSection = value.At("section").Text();
    const std::wstring strKey = value.At("key").Text();
    const std::wstring strValue = ReadSetting(value.At("value"));
    return [=](CPlayer& player) {
        // Uses the store itself: there is no application before the session.
        const TPlatform& platform = player.GetStage().platform;
        CIniConfig config(CIniConfig::FindPath(platform.locations), platform.files);
        const auto spSection = config.GetSection(strSection);
        spSection->SetString(strKey, strValue);
        // The store does not report failures, but the script must not play with other settings.
        if (spSection->GetString(strKey, {}) != strValue)
            throw step_failure("the setting " + ToUtf8(strSection) + ", " + ToUtf8(strKey) +
                               " cannot be written");
        if (!player.IsPreparing() || !EqualNoCase(strSection, L"Global")) return;
        g_Switches.Load(config);
        UseVectorKernels(g_Switches.m_bEnableSSE2 != 0);
    };
}
