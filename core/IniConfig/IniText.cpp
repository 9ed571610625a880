#include "core/IniConfig/IniText.h"

#include "core/Base/Text.h"

#include <algorithm>

namespace {

constexpr std::string_view BLANKS = " \t";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

std::string_view Trim(std::string_view str) {
    const size_t nFirst = str.find_first_not_of(BLANKS);
    if (nFirst == std::string_view::npos) return str.substr(str.size());
    return str.substr(nFirst, str.find_last_not_of(BLANKS) - nFirst + 1);
}

bool IsQuote(char ch) { return ch == '"' || ch == '\''; }

// One line: its position in the file, and its text without line break and outer blanks.
struct TLine {
    size_t nBegin = 0;
    size_t nNext = 0; // behind the line break
    std::string_view strText;
};

// Iterates over the lines of a file; CR LF, LF and CR all end a line.
class CLineReader {
public:
    explicit CLineReader(std::string_view strFile)
        : m_strFile(strFile), m_nAt(strFile.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0) {}

    bool Next(TLine& line) {
        if (m_nAt >= m_strFile.size()) return false;
        const size_t nEnd = std::min(m_strFile.find_first_of("\r\n", m_nAt), m_strFile.size());
        line.nBegin = m_nAt;
        line.strText = Trim(m_strFile.substr(m_nAt, nEnd - m_nAt));
        m_nAt = nEnd + (m_strFile.substr(nEnd, 2) == "\r\n" ? 2 : nEnd < m_strFile.size() ? 1 : 0);
        line.nNext = m_nAt;
        return true;
    }

private:
    std::string_view m_strFile;
    size_t m_nAt;
};

std::optional<std::string_view> SectionName(std::string_view strText) {
    const size_t nClose = strText.find(']');
    if (!strText.starts_with('[') || nClose == std::string_view::npos) return std::nullopt;
    return Trim(strText.substr(1, nClose - 1));
}

// The result of a search. Offsets are into the file.
struct TPlace {
    bool bSection = false;
    bool bKey = false;
    size_t nInsert = 0; // behind the section's last line that is not blank
    TLine line;         // the key's line
    size_t nValue = 0;  // its value with quotes, without blanks
    size_t cbValue = 0;
};

TPlace FindPlace(std::string_view strFile, std::string_view strSection, std::string_view strKey) {
    TPlace place;
    CLineReader reader(strFile);
    for (TLine line; reader.Next(line);) {
        if (const auto strName = SectionName(line.strText)) {
            if (place.bSection) break;
            place.bSection = EqualNoCase(*strName, Trim(strSection));
        }
        if (!place.bSection || line.strText.empty()) continue;
        place.nInsert = line.nNext;
        const size_t nEqual = line.strText.find('=');
        if (nEqual == std::string_view::npos || line.strText.starts_with(';') ||
            line.strText.starts_with('['))
            continue;
        if (!EqualNoCase(Trim(line.strText.substr(0, nEqual)), Trim(strKey))) continue;
        const std::string_view strValue = Trim(line.strText.substr(nEqual + 1));
        place.bKey = true;
        place.line = line;
        place.nValue = static_cast<size_t>(strValue.data() - strFile.data());
        place.cbValue = strValue.size();
        break;
    }
    return place;
}

std::string_view Unquoted(std::string_view strValue) {
    const bool bQuoted =
        strValue.size() >= 2 && IsQuote(strValue.front()) && strValue.front() == strValue.back();
    return bQuoted ? strValue.substr(1, strValue.size() - 2) : strValue;
}

// The value as written to a file: quoted if its ends would be lost by reading.
std::string Written(std::string_view strValue) {
    std::string strText(strValue);
    std::ranges::replace_if(
        strText, [](char ch) { return ch == '\r' || ch == '\n'; }, ' ');
    const auto isFragile = [](char ch) { return IsQuote(ch) || BLANKS.find(ch) != std::string_view::npos; };
    if (!strText.empty() && (isFragile(strText.front()) || isFragile(strText.back())))
        strText = '"' + strText + '"';
    return strText;
}

bool CanHold(std::string_view strSection, std::string_view strKey) {
    const std::string_view strName = Trim(strKey);
    return !strName.empty() && strName.find_first_of("=\r\n") == std::string_view::npos &&
           !strName.starts_with(';') && !strName.starts_with('[') &&
           strSection.find_first_of("]\r\n") == std::string_view::npos;
}

// The line break used by the file's first line.
std::string_view LineBreakOf(std::string_view strFile) {
    const size_t n = strFile.find_first_of("\r\n");
    if (n == std::string_view::npos) return "\n";
    return strFile.substr(n, strFile.substr(n, 2) == "\r\n" ? 2 : 1);
}

bool EndsInBreak(std::string_view str) { return str.ends_with('\n') || str.ends_with('\r'); }

} // namespace

std::optional<std::string> FindIniValue(std::string_view strFile, std::string_view strSection,
                                        std::string_view strKey) {
    const TPlace place = FindPlace(strFile, strSection, strKey);
    if (!place.bKey) return std::nullopt;
    return std::string(Unquoted(strFile.substr(place.nValue, place.cbValue)));
}

bool SetIniValue(std::string& strFile, std::string_view strSection, std::string_view strKey,
                 std::string_view strValue) {
    if (!CanHold(strSection, strKey)) return false;
    const std::string strWritten = Written(strValue);
    const TPlace place = FindPlace(strFile, strSection, strKey);
    if (place.bKey) {
        if (std::string_view(strFile).substr(place.nValue, place.cbValue) == strWritten) return false;
        strFile.replace(place.nValue, place.cbValue, strWritten);
        return true;
    }
    const std::string strBreak(LineBreakOf(strFile));
    std::string strNew = std::string(Trim(strKey)) + '=' + strWritten + strBreak;
    if (place.bSection) {
        // The section's last line may be the file's, without a line break.
        if (!EndsInBreak(std::string_view(strFile).substr(0, place.nInsert))) strNew = strBreak + strNew;
        strFile.insert(place.nInsert, strNew);
        return true;
    }
    bool bAny = false;
    bool bBlankEnd = true;
    CLineReader reader(strFile);
    for (TLine line; reader.Next(line); bAny = true) bBlankEnd = line.strText.empty();
    if (bAny && !EndsInBreak(strFile)) strFile += strBreak;
    if (!bBlankEnd) strFile += strBreak;
    strFile += '[' + std::string(Trim(strSection)) + ']' + strBreak + strNew;
    return true;
}

bool RemoveIniKey(std::string& strFile, std::string_view strSection, std::string_view strKey) {
    const TPlace place = FindPlace(strFile, strSection, strKey);
    if (place.bKey) strFile.erase(place.line.nBegin, place.line.nNext - place.line.nBegin);
    return place.bKey;
}
