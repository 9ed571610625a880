#include "app/session/Worker.h"

#include <fstream>

std::string DescribeEnd(const TEnded& ended, const std::filesystem::path& pathSaid) {
    if (!ended.strCrashed.empty()) return ended.strCrashed;
    if (ended.nCode == 0) return {};
    std::ifstream file(pathSaid);
    std::string strLine;
    if (!std::getline(file, strLine) || strLine.empty()) return "exit code " + std::to_string(ended.nCode);
    // The output starts with the program's name; only the reason is needed.
    const std::string strName = "vellumcraft-session: ";
    return strLine.starts_with(strName) ? strLine.substr(strName.size()) : strLine;
}
