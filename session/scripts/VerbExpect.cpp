// The verbs "mark" and "expect": store the document's state, compare a part of the session's.
#include "core/Base/Text.h"
#include "core/Commands/Commands.h"
#include "core/MainFrame/MainFrame.h"
#include "session/scripts/DocumentState.h"
#include "session/scripts/Player.h"
#include "session/scripts/Verbs.h"
#include "session/seam/SessionCanvasWindow.h"
#include "session/seam/SessionLog.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <iterator>
#include <map>
#include <optional>

using nlohmann::json;

namespace {

using TStates = std::map<int, bool>; ///< by command id

struct TPixel {
    int32_t x, y;
    json rgba;
};

struct TExpectation {
    json document; ///< a part of DescribeDocument's
    std::optional<std::string> strBox;
    TStates mapEnabled;
    TStates mapChecked;
    std::optional<TPixel> pixel;
    std::optional<std::string> strMark;
    std::optional<std::string> strStatus;
    std::optional<std::string> strCursor;
};

/// The pointer's shapes in the order of ECursor.
constexpr const char* CURSORS[] = {"arrow",  "forbidden", "cross", "select", "move",     "add",
                                   "remove", "join",      "width", "hand",   "hand-grip"};
static_assert(std::size(CURSORS) == static_cast<size_t>(ECursor::HandGrip) + 1);

void CheckShape(const CScriptValue& value, const json& shape);

void CheckLeaf(const CScriptValue& value, const std::string& strShape) {
    const json& j = value.GetJson();
    if (strShape == "flag") {
        value.Flag();
    } else if (strShape == "number") {
        value.Integer(INT32_MIN, INT32_MAX);
    } else if (strShape == "text") {
        if (!j.is_string()) value.Refuse("must be a text");
    } else {
        CheckShape(value, json::array({GetLayerShape()}));
    }
}

// Rejects keys and types that the document's state cannot have.
void CheckShape(const CScriptValue& value, const json& shape) {
    const json& j = value.GetJson();
    if (shape.is_string()) {
        CheckLeaf(value, shape.get<std::string>());
    } else if (shape.is_array()) {
        if (!j.is_array()) value.Refuse("must be a list");
        for (size_t i = 0; i < j.size(); ++i)
            CheckShape({j[i], value.GetName() + "[" + std::to_string(i) + "]"}, shape.front());
    } else {
        if (!j.is_object()) value.Refuse("must be an object");
        for (const auto& [strKey, member] : j.items()) {
            if (!shape.contains(strKey)) value.Refuse("unknown key \"" + strKey + "\"");
            CheckShape({member, value.GetName() + "." + strKey}, shape[strKey]);
        }
    }
}

// Reads a key that is a command's name or the digits of its id.
int ReadCommandKey(const CScriptValue& value, const std::string& strKey) {
    int nId = 0;
    const char* pEnd = strKey.data() + strKey.size();
    const auto result = std::from_chars(strKey.data(), pEnd, nId);
    if (result.ec != std::errc() || result.ptr != pEnd) nId = FindCommandId(strKey);
    if (!nId) value.Refuse("\"" + strKey + "\" names no command");
    return nId;
}

TStates ReadStates(const CScriptValue& value) {
    if (!value.GetJson().is_object()) value.Refuse("must be an object of commands");
    TStates mapStates;
    for (const auto& [strKey, member] : value.GetJson().items()) {
        mapStates[ReadCommandKey(value, strKey)] =
            CScriptValue(member, value.GetName() + "." + strKey).Flag();
    }
    return mapStates;
}

TPixel ReadPixel(const CScriptValue& value) {
    value.Object({"x", "y", "rgba"});
    const CScriptValue rgba = value.At("rgba");
    if (!rgba.GetJson().is_array() || rgba.GetJson().size() != 4)
        rgba.Refuse("must be a list of four numbers");
    for (const json& member : rgba.GetJson()) CScriptValue(member, rgba.GetName()).Integer(0, 255);
    return {static_cast<int32_t>(value.At("x").Integer(0, INT32_MAX)),
            static_cast<int32_t>(value.At("y").Integer(0, INT32_MAX)), rgba.GetJson()};
}

std::string Differ(const std::string& strWay, const json& expected, const json& actual) {
    const auto text = [](const json& j) { return j.dump(-1, ' ', false, json::error_handler_t::replace); };
    return strWay + ": expected " + text(expected) + ", found " + text(actual);
}

// Objects are compared by the expected keys only, all other values as a whole.
void Compare(const std::string& strWay, const json& expected, const json& actual) {
    if (expected.is_object() && actual.is_object()) {
        for (const auto& [strKey, member] : expected.items())
            Compare(strWay.empty() ? strKey : strWay + "." + strKey, member, actual.value(strKey, json()));
    } else if (expected.is_array() && actual.is_array() && expected.size() == actual.size()) {
        for (size_t i = 0; i < expected.size(); ++i)
            Compare(strWay + "[" + std::to_string(i) + "]", expected[i], actual[i]);
    } else if (expected != actual) {
        throw step_failure(Differ(strWay, expected, actual));
    }
}

void CompareStates(const std::string& strWay, const TStates& mapStates,
                   bool (CMainFrame::*pfnGet)(int) const) {
    if (mapStates.empty()) return;
    if (!g_pMainFrame) throw step_failure("there is no main window");
    for (const auto& [nId, bExpected] : mapStates)
        Compare(strWay + "." + std::to_string(nId), bExpected, ((*g_pMainFrame).*pfnGet)(nId));
}

void CompareBox(const std::string& strExpected, CSessionLog& log) {
    const std::wstring* pText = log.GetBoxText();
    const json actual = pText ? json(ToUtf8(*pText)) : json();
    // The error box counts as expected either way: if its text differs, this line fails.
    log.AcceptError();
    Compare("box", strExpected, actual);
}

void ComparePixel(const TPixel& pixel, IImageCodecs& codecs) {
    const json actual = DescribePixel(*GetActiveFrame().GetCanvas(), codecs, pixel.x, pixel.y);
    if (actual == pixel.rgba) return;
    const std::string strWay = "pixel (" + std::to_string(pixel.x) + ", " + std::to_string(pixel.y) + ")";
    throw step_failure(Differ(strWay, pixel.rgba, actual));
}

// The document's content, without its name and history. The selected layer is not part of it, because undo
// selects others.
json DescribeContent(IImageCodecs& codecs) {
    GetActiveFrame();
    json state = DescribeDocument(codecs, true);
    for (const char* psz : {"frames", "title", "path", "modified", "history", "view"}) state.erase(psz);
    const auto forget = [](const auto& self, json& layers) -> void {
        for (json& layer : layers) {
            layer.erase("active");
            self(self, layer["children"]);
        }
    };
    forget(forget, state["layers"]);
    return state;
}

void CompareMark(const std::string& strMark, CPlayer& player) {
    const auto it = player.m_mapMarks.find(strMark);
    if (it == player.m_mapMarks.end()) throw step_failure("nothing was marked as \"" + strMark + "\"");
    Compare("mark", json::parse(it->second), DescribeContent(player.GetStage().platform.codecs));
}

void Play(const TExpectation& expectation, CPlayer& player) {
    IImageCodecs& codecs = player.GetStage().platform.codecs;
    if (expectation.strBox) CompareBox(*expectation.strBox, player.GetStage().log);
    CompareStates("enabled", expectation.mapEnabled, &CMainFrame::IsCommandEnabled);
    CompareStates("checked", expectation.mapChecked, &CMainFrame::IsCommandChecked);
    if (!expectation.document.empty())
        Compare("", expectation.document, DescribeDocument(codecs, expectation.document.contains("pixels")));
    if (expectation.pixel) ComparePixel(*expectation.pixel, codecs);
    if (expectation.strMark) CompareMark(*expectation.strMark, player);
    if (expectation.strStatus && g_pMainFrame)
        Compare("status", *expectation.strStatus, ToUtf8(g_pMainFrame->GetTold()));
    if (expectation.strCursor) {
        const auto* pWindow = dynamic_cast<const CSessionCanvasWindow*>(GetActiveFrame().GetWindow());
        Compare("cursor", *expectation.strCursor,
                pWindow ? json(CURSORS[static_cast<size_t>(pWindow->GetCursor())]) : json());
    }
}

} // namespace

TAction ReadMark(const CScriptValue& value) {
    const std::string strMark = value.Utf8();
    return [strMark](CPlayer& player) {
        player.m_mapMarks[strMark] = DescribeContent(player.GetStage().platform.codecs)
                                         .dump(-1, ' ', false, json::error_handler_t::replace);
    };
}

TAction ReadExpect(const CScriptValue& value) {
    if (!value.GetJson().is_object() || value.GetJson().empty())
        value.Refuse("must be an object of expectations");
    TExpectation expectation;
    expectation.document = value.GetJson();
    if (value.Has("box")) expectation.strBox = value.At("box").Utf8();
    if (value.Has("mark")) expectation.strMark = value.At("mark").Utf8();
    if (value.Has("status")) expectation.strStatus = value.At("status").Utf8();
    if (value.Has("cursor")) expectation.strCursor = value.At("cursor").Utf8();
    if (value.Has("enabled")) expectation.mapEnabled = ReadStates(value.At("enabled"));
    if (value.Has("checked")) expectation.mapChecked = ReadStates(value.At("checked"));
    if (value.Has("pixel")) expectation.pixel = ReadPixel(value.At("pixel"));
    for (const char* pszOwn : {"box", "enabled", "checked", "mark", "pixel", "status", "cursor"})
        expectation.document.erase(pszOwn);
    CheckShape({expectation.document, value.GetName()}, GetDocumentShape());
    return [expectation](CPlayer& player) { Play(expectation, player); };
}
