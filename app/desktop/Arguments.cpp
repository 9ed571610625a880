#include "app/desktop/Arguments.h"

#include <filesystem>

const char DESKTOP_USAGE[] = R"(usage: vellumcraft [OPTION]... [FILE]...

Opens project files and pictures. When Vellumcraft is running already, it opens them and comes to the front.

  --new-window    start an instance of its own
  --record FILE   record the session as a script, in an instance of its own
  --help          show this
)";

TDesktopArguments ParseDesktopArguments(const std::vector<std::string>& vArguments) {
    TDesktopArguments arguments;
    bool bOptions = true;
    for (auto it = vArguments.begin(); it != vArguments.end(); ++it) {
        const std::string& str = *it;
        if (!bOptions || !str.starts_with("--"))
            // The instance that opens it may run in another folder.
            arguments.vFiles.push_back(std::filesystem::absolute(str).native());
        else if (str == "--")
            bOptions = false;
        else if (str == "--new-window")
            arguments.bNewWindow = true;
        else if (str == "--record") {
            if (++it == vArguments.end() || it->empty()) throw std::runtime_error("--record needs a file");
            arguments.strRecord = std::filesystem::absolute(*it).native();
            arguments.bNewWindow = true;
        } else if (str == "--help")
            arguments.bHelp = true;
        else
            throw std::runtime_error("unknown option " + str);
    }
    return arguments;
}
