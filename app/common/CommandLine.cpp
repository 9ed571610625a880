#include "app/common/CommandLine.h"

#include "system/files/FilePath.h"

#include <algorithm>

std::vector<std::string> ReadCommandLine(const std::vector<std::string>& vArguments,
                                         const std::vector<TOption>& vOptions) {
    std::vector<std::string> vNames;
    bool bOptions = true;
    for (auto it = vArguments.begin(); it != vArguments.end(); ++it) {
        if (!bOptions || it->size() < 2 || it->front() != '-') {
            vNames.push_back(*it);
            continue;
        }
        if (*it == "--") {
            bOptions = false;
            continue;
        }
        const auto itOption = std::ranges::find(vOptions, *it, &TOption::strName);
        if (itOption == vOptions.end()) throw usage_error("unknown option " + *it);
        if (itOption->fnFlag) {
            itOption->fnFlag();
            continue;
        }
        if (++it == vArguments.end() || it->empty()) throw usage_error(itOption->strName + " needs a value");
        itOption->fnValue(*it);
    }
    return vNames;
}

TOption Flag(const char* pszName, bool& bFlag) {
    return {pszName, [&bFlag] { bFlag = true; }, {}};
}

TOption Value(const char* pszName, std::string& strValue) {
    return {pszName, {}, [&strValue](const std::string& str) { strValue = str; }};
}

TOption Value(const char* pszName, std::filesystem::path& pathValue) {
    return {pszName, {}, [&pathValue](const std::string& str) { pathValue = PathOf(str); }};
}
