// The verb "clipboard": another program's copy and paste.
#include "core/Base/Text.h"
#include "core/Platform/Bitmap.h"
#include "core/Platform/System.h"
#include "session/scripts/Player.h"
#include "session/scripts/Verbs.h"
#include "system/pictures/Pictures.h"

#include <nlohmann/json.hpp>

namespace {

TAction Set(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    const std::string strText = value.Utf8();
    const bool bText = IsPictureText(strText);
    if (!bText && ExtensionOf(strPath).empty())
        value.Refuse("must be the name of a picture or a PNG as text");
    return [=](CPlayer& player) {
        const TPlatform& platform = player.GetStage().platform;
        const TLoadedPicture picture =
            bText ? platform.codecs.LoadResource(ReadPictureText(strText)) : platform.codecs.Load(strPath);
        if (!picture || !platform.clipboard.SetPicture(*picture))
            throw step_failure("the picture for the clipboard cannot be read");
    };
}

TAction Get(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    if (!EqualNoCase(ExtensionOf(strPath), L".png")) value.Refuse("must be the name of a .png file");
    return [=](CPlayer& player) {
        const TPlatform& platform = player.GetStage().platform;
        const auto spPicture = platform.clipboard.GetPicture();
        if (!spPicture) throw step_failure("there is no picture on the clipboard");
        if (!platform.codecs.Save(strPath, *spPicture))
            throw step_failure(ToUtf8(strPath) + " cannot be written");
    };
}

} // namespace

TAction ReadClipboard(const CScriptValue& value) {
    value.Object({"set", "get", "clear"});
    if (value.GetJson().size() != 1) value.Refuse("must have one of \"set\", \"get\", \"clear\"");
    if (value.Has("set")) return Set(value.At("set"));
    if (value.Has("get")) return Get(value.At("get"));
    if (!value.At("clear").Flag()) value.Refuse("\"clear\" can only be true");
    return [](CPlayer& player) { player.GetStage().platform.clipboard.SetText({}); };
}
