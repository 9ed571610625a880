#include "core/Base/Table.h"

#include "core/Base/Failure.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

std::vector<std::vector<std::string>> ParseTable(std::string_view strText, size_t nFields) {
    std::vector<std::string> vLines;
    boost::split(vLines, strText, boost::is_any_of("\n"));
    std::vector<std::vector<std::string>> vRows;
    for (std::string& strLine : vLines) {
        boost::trim_right(strLine);
        if (strLine.empty() || strLine[0] == '#') continue;
        boost::split(vRows.emplace_back(), strLine, boost::is_any_of("\t"));
        if (vRows.back().size() != nFields) throw deserialize_error();
    }
    return vRows;
}
