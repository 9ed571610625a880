#include "app/session/Arguments.h"

#include "system/files/FilePath.h"

#include <charconv>

namespace fs = std::filesystem;

const char USAGE[] = R"(usage: vellumcraft-session [OPTION]... [SCRIPT]

Plays a session script without a display, in the desktop application or, with --in, in the filter over a
picture. Its settings are its own.

  --in PICTURE      play it over this picture (PNG, JPEG, BMP, TIFF, GIF), as a host would
  --out FILE        write the result in the format of its name: the picture, or without --in and with
                    --desktop the last active document, also as PSD or SVG with its layers, or as a
                    project file (VLM)
  --each PATTERN    play it over every picture that the pattern names, as in --each 'pages/*.png'
  --out-dir FOLDER  with --each: where the results go, under their pages' names
  --format ENDING   with --each: the format of the results, as in --format png; with --desktop also psd,
                    svg and vlm; default: each page's own
  --desktop         with --in or --each: open the picture or project file in the desktop application; the
                    result has the size that the script gives it, while a host's picture keeps its own.
                    With --in and --out, or with --format, no script is needed
  --jobs N          with --each: N pages at a time; default: one a processor
  --module FILE     the filter module; default: the installed one, or vellumcraft.8bf beside this program
  --help            show this

Exit code: 0 done, 1 the session or a page failed, 2 the script or the command line is wrong.
)";

namespace {

unsigned ReadJobs(const std::string& str) {
    constexpr unsigned MAX_JOBS = 1024;
    unsigned uJobs = 0;
    const auto [pEnd, error] = std::from_chars(str.data(), str.data() + str.size(), uJobs);
    if (error != std::errc() || pEnd != str.data() + str.size() || uJobs < 1 || uJobs > MAX_JOBS)
        throw usage_error("--jobs needs a number from 1 to " + std::to_string(MAX_JOBS));
    return uJobs;
}

void Check(const TArguments& arguments) {
    const bool bBatch = !arguments.strEach.empty();
    if (bBatch == arguments.pathOutDir.empty()) throw usage_error("--each and --out-dir go together");
    if (bBatch && !(arguments.pathIn.empty() && arguments.pathOut.empty()))
        throw usage_error("--each excludes --in and --out");
    if (arguments.bDesktop && !bBatch && arguments.pathIn.empty())
        throw usage_error("--desktop goes with --in or --each");
    if (!bBatch && !arguments.strFormat.empty()) throw usage_error("--format goes with --each");
    if (!bBatch && arguments.uJobs != 0) throw usage_error("--jobs goes with --each");
    std::error_code error;
    if (fs::equivalent(arguments.pathIn, arguments.pathOut, error))
        throw usage_error("the result would overwrite " + Utf8Of(arguments.pathIn));
}

} // namespace

TArguments ParseArguments(const std::vector<std::string>& vArguments) {
    TArguments arguments;
    const auto vNames = ReadCommandLine(
        vArguments, {Value("--in", arguments.pathIn),
                     Value("--out", arguments.pathOut),
                     Value("--each", arguments.strEach),
                     Value("--out-dir", arguments.pathOutDir),
                     Value("--format", arguments.strFormat),
                     {"--jobs", {}, [&](const std::string& str) { arguments.uJobs = ReadJobs(str); }},
                     Value("--module", arguments.pathModule),
                     Flag("--desktop", arguments.bDesktop),
                     Flag("--help", arguments.bHelp)});
    if (arguments.bHelp) return arguments;
    const bool bConverts = arguments.bDesktop && (!arguments.strFormat.empty() ||
                                                  !(arguments.pathIn.empty() || arguments.pathOut.empty()));
    if (vNames.size() > 1 || (vNames.empty() ? !bConverts : vNames.front().empty()))
        throw usage_error("one script is to be named");
    if (!vNames.empty()) arguments.pathScript = PathOf(vNames.front());
    Check(arguments);
    return arguments;
}
