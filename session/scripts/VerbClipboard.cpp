// The verb "clipboard": another program's copy and paste.
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/PathSelect/StrokeForms.h"
#include "core/Platform/Files.h"
#include "core/Platform/System.h"
#include "session/scripts/Player.h"
#include "session/scripts/Verbs.h"
#include "system/pictures/Pictures.h"

#include <boost/make_shared.hpp>
#include <nlohmann/json.hpp>

namespace {

constexpr char NOTHING_THERE[] = "there is no picture on the clipboard";

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
        if (!platform.clipboard.HasPicture()) throw step_failure(NOTHING_THERE);
        const TLoadedPicture picture = platform.clipboard.GetPicture();
        if (!picture)
            throw step_failure("the clipboard's picture cannot be read: " +
                               ToUtf8(AdviceFor(picture.failure)));
        if (!platform.codecs.Save(strPath, *picture))
            throw step_failure(ToUtf8(strPath) + " cannot be written");
    };
}

TAction SetBlock(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    const std::string strText = value.Utf8();
    return [=](CPlayer& player) {
        const TPlatform& platform = player.GetStage().platform;
        const TFileBytes bytes =
            IsBlockText(strText) ? ReadPictureText(strText) : platform.files.Read(strPath);
        if (!bytes) throw step_failure("the block for the clipboard cannot be read");
        platform.clipboard.SetBlock(boost::make_shared<std::string>(*bytes));
    };
}

TAction GetBlock(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    return [=](CPlayer& player) {
        const TPlatform& platform = player.GetStage().platform;
        const TDibBytes spBlock = platform.clipboard.GetBlock();
        if (!spBlock) throw step_failure(NOTHING_THERE);
        if (!platform.files.Replace(strPath, *spBlock))
            throw step_failure(ToUtf8(strPath) + " cannot be written");
    };
}

// The other forms follow from the own one. Strokes that cannot be read are there all the same.
TStrokeForms FormsOf(const TStrokeBytes& spStrokes) {
    try {
        return MakeStrokeForms(ReadStrokes(spStrokes));
    } catch (const deserialize_error&) {
        return {spStrokes, {}, {}};
    }
}

TAction SetStrokes(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    const std::string strText = value.Utf8();
    return [=](CPlayer& player) {
        const TPlatform& platform = player.GetStage().platform;
        const TFileBytes bytes =
            IsStrokesText(strText) ? ReadPictureText(strText) : platform.files.Read(strPath);
        if (!bytes) throw step_failure("the strokes for the clipboard cannot be read");
        platform.clipboard.SetStrokes(FormsOf(boost::make_shared<std::string>(*bytes)));
    };
}

TAction GetStrokes(const CScriptValue& value) {
    const std::wstring strPath = value.Text();
    return [=](CPlayer& player) {
        const TPlatform& platform = player.GetStage().platform;
        const TStrokeBytes spStrokes = platform.clipboard.GetStrokes();
        if (!spStrokes) throw step_failure("there are no strokes on the clipboard");
        if (!platform.files.Replace(strPath, *spStrokes))
            throw step_failure(ToUtf8(strPath) + " cannot be written");
    };
}

} // namespace

TAction ReadClipboard(const CScriptValue& value) {
    value.Object({"set", "get", "setBlock", "getBlock", "setStrokes", "getStrokes", "clear"});
    if (value.GetJson().size() != 1)
        value.Refuse("must have one of \"set\", \"get\", \"setBlock\", \"getBlock\", \"setStrokes\", "
                     "\"getStrokes\", \"clear\"");
    if (value.Has("setStrokes")) return SetStrokes(value.At("setStrokes"));
    if (value.Has("getStrokes")) return GetStrokes(value.At("getStrokes"));
    if (value.Has("set")) return Set(value.At("set"));
    if (value.Has("get")) return Get(value.At("get"));
    if (value.Has("setBlock")) return SetBlock(value.At("setBlock"));
    if (value.Has("getBlock")) return GetBlock(value.At("getBlock"));
    if (!value.At("clear").Flag()) value.Refuse("\"clear\" can only be true");
    return [](CPlayer& player) { player.GetStage().platform.clipboard.SetText({}); };
}
