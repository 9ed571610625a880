#include "app/desktop/Arguments.h"

#include "app/common/CommandLine.h"

#include <filesystem>

const char DESKTOP_USAGE[] = R"(usage: vellumcraft [OPTION]... [FILE]...

Opens project files and pictures. When Vellumcraft is running already, it opens them and comes to the front.

  --new-window    start an instance of its own
  --record FILE   record the session as a script, in an instance of its own
  --help          show this
)";

TDesktopArguments ParseDesktopArguments(const std::vector<std::string>& vArguments) {
    TDesktopArguments arguments;
    // The instance that opens a file may have another current folder.
    const auto absolute = [](const std::string& str) { return std::filesystem::absolute(str).native(); };
    const auto vNames = ReadCommandLine(vArguments, {Flag("--new-window", arguments.bNewWindow),
                                                     Value("--record", arguments.strRecord),
                                                     Flag("--help", arguments.bHelp)});
    if (!arguments.strRecord.empty()) {
        arguments.strRecord = absolute(arguments.strRecord);
        arguments.bNewWindow = true;
    }
    for (const std::string& str : vNames) arguments.vFiles.push_back(absolute(str));
    return arguments;
}
