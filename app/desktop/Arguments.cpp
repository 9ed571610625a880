#include "app/desktop/Arguments.h"

#include "app/common/CommandLine.h"
#include "app/desktop/Handover.h"
#include "system/files/FilePath.h"

#include <filesystem>

const char DESKTOP_USAGE[] = R"(usage: vellumcraft [OPTION]... [FILE]...

Opens project files and pictures. When Vellumcraft is running already, it opens them and comes to the front.

  --new           begin a new document
  --new-window    start an instance of its own
  --record FILE   record the session as a script, in an instance of its own
  --help          show this
)";

TDesktopArguments ParseDesktopArguments(const std::vector<std::string>& vArguments) {
    TDesktopArguments arguments;
    // The instance that opens a file may have another current folder.
    const auto absolute = [](const std::string& str) {
        return Utf8Of(std::filesystem::absolute(PathOf(str)));
    };
    bool bNew = false;
    const auto vNames = ReadCommandLine(
        vArguments, {Flag("--new", bNew), Flag("--new-window", arguments.bNewWindow),
                     Value("--record", arguments.strRecord), Flag("--help", arguments.bHelp)});
    if (!arguments.strRecord.empty()) {
        arguments.strRecord = absolute(arguments.strRecord);
        arguments.bNewWindow = true;
    }
    for (const std::string& str : vNames) arguments.vFiles.push_back(absolute(str));
    if (bNew) arguments.vFiles.emplace_back(NEW_DOCUMENT);
    return arguments;
}
