// Lines of session scripts.
#pragma once

#include <boost/algorithm/string/replace.hpp>
#include <nlohmann/json.hpp>

#include <string>

using TWords = nlohmann::json;

/// One verb with what it is given, and with more words of the line.
inline std::string ScriptLine(const char* pszVerb, TWords value, const TWords& more = nullptr) {
    if (!more.is_null()) value.update(more);
    return TWords{{pszVerb, value}}.dump() + "\n";
}

inline std::string Wait(int nMilliseconds) { return ScriptLine("wait", nMilliseconds); }
inline std::string Proximity(const char* pszWhat) { return ScriptLine("proximity", pszWhat); }

/// A value of a tool's settings, which the tool reads when it is chosen.
inline std::string SetBrush(const char* pszKey, int nValue, const std::string& strTool = "RasterBrush") {
    return ScriptLine("set", {{"section", "BrushParam\\" + strTool}, {"key", pszKey}, {"value", nValue}});
}

/// The input lines of a script, each marked as an event that nothing need take.
inline std::string MarkIdle(const std::string& strLines) {
    return boost::replace_all_copy(strLines, "}}", ",\"idle\":true}}");
}

/// The answer to the last prompt.
constexpr char LEAVE_UNSAVED[] = "{\"answer\":{\"box\":\"no\"}}\n";
