#include "session/scripts/Script.h"

#include "core/Base/Text.h"
#include "core/Platform/Files.h"
#include "session/scripts/Verbs.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

using nlohmann::json;

namespace {

// Removes the next line from `str` and returns it without its line end.
std::string_view TakeLine(std::string_view& str) {
    const size_t nEnd = str.find('\n');
    std::string_view strLine = str.substr(0, nEnd);
    str.remove_prefix(nEnd == std::string_view::npos ? str.size() : nEnd + 1);
    if (strLine.ends_with('\r')) strLine.remove_suffix(1);
    return strLine;
}

bool IsSkipped(std::string_view strLine) {
    const size_t nFirst = strLine.find_first_not_of(" \t");
    return nFirst == std::string_view::npos || strLine[nFirst] == '#';
}

json ParseLine(std::string_view strLine) {
    try {
        return json::parse(strLine);
    } catch (const json::parse_error& e) {
        throw script_error("no JSON object: byte " + std::to_string(e.byte));
    }
}

TStep ReadStep(std::string_view strLine) {
    const json line = ParseLine(strLine);
    if (!line.is_object() || line.size() != 1) throw script_error("a line is an object with one verb");
    const std::string strVerb = line.begin().key();
    const auto verbs = GetVerbs();
    const auto it =
        std::find_if(verbs.begin(), verbs.end(), [&](const TVerb& verb) { return strVerb == verb.pszName; });
    if (it == verbs.end()) throw script_error("unknown verb \"" + strVerb + "\"");
    return {0, it->pfnRead({line.front(), strVerb}), it->kind, it->bPast ? line.dump() : std::string()};
}

} // namespace

TScript ParseScript(std::string_view strBytes, const std::string& strName) {
    TScript script{strName, {}};
    if (strBytes.starts_with("\xEF\xBB\xBF")) strBytes.remove_prefix(3);
    for (int nLine = 1; !strBytes.empty(); ++nLine) {
        const std::string_view strLine = TakeLine(strBytes);
        if (IsSkipped(strLine)) continue;
        try {
            TStep step = ReadStep(strLine);
            step.nLine = nLine;
            script.vSteps.push_back(std::move(step));
        } catch (const script_error& e) {
            throw script_error(strName + ":" + std::to_string(nLine) + ": " + e.what());
        }
    }
    return script;
}

TScript ReadScript(const std::wstring& strPath, IFileStore& files) {
    const auto strBytes = files.Read(strPath);
    if (!strBytes) throw script_error(ToUtf8(strPath) + ": the script cannot be read");
    return ParseScript(*strBytes, ToUtf8(strPath));
}
