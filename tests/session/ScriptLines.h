// Lines of session scripts.
#pragma once

#include <boost/algorithm/string/replace.hpp>
#include <nlohmann/json.hpp>

#include <array>
#include <string>
#include <vector>

using TWords = nlohmann::json;

/// A line with one verb and its value, and with further members.
inline std::string ScriptLine(const char* pszVerb, TWords value, const TWords& more = nullptr) {
    if (!more.is_null()) value.update(more);
    return TWords{{pszVerb, value}}.dump() + "\n";
}

/// The commands of these ids in order.
inline std::string Commands(const std::vector<int>& vIds) {
    std::string str;
    for (const int nId : vIds) str += ScriptLine("command", nId);
    return str;
}

/// A line of pen reports: x and y in eighths of a pixel, and the pressure.
inline std::string PenAt(const std::vector<std::array<int, 3>>& vReports) {
    std::string str;
    for (const auto& [x, y, nPressure] : vReports)
        str += ScriptLine("pen", {{"x", x}, {"y", y}, {"pressure", nPressure}});
    return str;
}

inline std::string Tool(int nTool) { return ScriptLine("tool", nTool); }
inline std::string Wait(int nMilliseconds) { return ScriptLine("wait", nMilliseconds); }
inline std::string Proximity(const char* pszWhat) { return ScriptLine("proximity", pszWhat); }

/// Sets a value of a tool's settings, which the tool reads when it is selected.
inline std::string SetBrush(const char* pszKey, int nValue, const std::string& strTool = "RasterBrush") {
    return ScriptLine("set", {{"section", "BrushParam\\" + strTool}, {"key", pszKey}, {"value", nValue}});
}

/// The input lines of a script, each marked as an event that may be ignored.
inline std::string MarkIdle(const std::string& strLines) {
    return boost::replace_all_copy(strLines, "}}", ",\"idle\":true}}");
}

/// The answer to the last prompt.
constexpr char LEAVE_UNSAVED[] = "{\"answer\":{\"box\":\"no\"}}\n";
