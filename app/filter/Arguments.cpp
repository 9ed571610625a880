#include "app/filter/Arguments.h"

#include "system/files/FilePath.h"

namespace fs = std::filesystem;

const char USAGE[] = R"(usage: vellumcraft-filter [OPTION]... IN [OUT]

Opens the picture IN (PNG, JPEG, BMP, TIFF, GIF) in a Vellumcraft session. When the session ends, the result
goes to OUT in the format of its name; without OUT it goes beside IN as NAME-vellumcraft.png.

  --alpha FILE    a picture of IN's size as a further channel (may be repeated); it is written back beside
                  OUT as NAME-vellumcraft-alphaN.png
  --in-place      write the result over IN
  --module FILE   the filter module; default: the installed one, or vellumcraft.8bf beside this program
  --script FILE   let a session script take the user's place, without a display and with its own settings
  --windows       with --script: play it in real windows
  --record FILE   record the session as a script
  --help          show this

Exit code: 0 done, 1 the picture or the session failed (nothing is written), 2 the command line is wrong.
)";

namespace {

bool IsSameFile(const fs::path& a, const fs::path& b) {
    std::error_code error;
    return fs::equivalent(a, b, error) && !error;
}

void CheckOutputs(const TArguments& arguments, bool bInPlace) {
    std::vector<fs::path> vOut = arguments.vAlphaOut;
    vOut.push_back(arguments.pathOut);
    std::vector<fs::path> vIn = arguments.vAlphas;
    vIn.push_back(arguments.pathIn);
    for (const fs::path& out : vOut)
        for (const fs::path& in : vIn) {
            const bool bAllowed = bInPlace && &out == &vOut.back() && &in == &vIn.back();
            if (!bAllowed && IsSameFile(out, in))
                throw usage_error("the result would overwrite " + Utf8Of(in) +
                                  "; name another OUT, or give --in-place for the picture itself");
        }
}

} // namespace

TArguments ParseArguments(const std::vector<std::string>& vArguments) {
    TArguments arguments;
    bool bInPlace = false;
    const auto vNames = ReadCommandLine(
        vArguments,
        {{"--alpha", {}, [&](const std::string& str) { arguments.vAlphas.push_back(PathOf(str)); }},
         Flag("--in-place", bInPlace),
         Value("--module", arguments.pathModule),
         Value("--script", arguments.pathScript),
         Value("--record", arguments.pathRecord),
         Flag("--windows", arguments.bWindows),
         Flag("--help", arguments.bHelp)});
    if (arguments.bHelp) return arguments;
    if (vNames.empty() || vNames.front().empty()) throw usage_error("no picture is named");
    if (vNames.size() > 2) throw usage_error("too many names");
    if (bInPlace && vNames.size() == 2) throw usage_error("--in-place and OUT exclude each other");
    if (arguments.bWindows && arguments.pathScript.empty()) throw usage_error("--windows goes with --script");

    arguments.pathIn = PathOf(vNames.front());
    const std::string strStem = Utf8Of(arguments.pathIn.stem()) + "-vellumcraft";
    if (bInPlace)
        arguments.pathOut = arguments.pathIn;
    else if (vNames.size() == 2)
        arguments.pathOut = PathOf(vNames.back());
    else
        arguments.pathOut = arguments.pathIn.parent_path() / PathOf(strStem + ".png");
    for (size_t i = 1; i <= arguments.vAlphas.size(); ++i)
        arguments.vAlphaOut.push_back(arguments.pathOut.parent_path() /
                                      PathOf(strStem + "-alpha" + std::to_string(i) + ".png"));
    CheckOutputs(arguments, bInPlace);
    return arguments;
}
