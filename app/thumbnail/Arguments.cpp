#include "app/thumbnail/Arguments.h"

#include "app/common/CommandLine.h"
#include "core/ImageFile/ProjectThumbnail.h"

#include <algorithm>
#include <charconv>
#include <string_view>

const char THUMBNAIL_USAGE[] = R"(usage: vellumcraft-thumbnailer [OPTION]... INPUT OUTPUT

Makes the small picture of a project file that file managers show: a PNG file on white paper. It opens no
window, reads no settings and writes nothing but OUTPUT, which is whole or not there.

  --size PIXELS  the longer side at most, 1 to 1024; default: 128. Drawings are not enlarged. -s is the same
  --verbose      say why there is no picture
  --help         show this

Exit code: 0 done, 1 there is no picture, 2 the command line is wrong.
)";

namespace {

int32_t ReadSide(std::string_view str) {
    int64_t nSide = 0;
    const auto [pEnd, error] = std::from_chars(str.data(), str.data() + str.size(), nSide);
    if (error != std::errc() || pEnd != str.data() + str.size() || nSide < 1)
        throw usage_error("--size needs a number from 1 on");
    // A desktop may have larger pictures than there were when this was written.
    return static_cast<int32_t>(std::min<int64_t>(nSide, MAX_THUMBNAIL_SIDE));
}

} // namespace

TThumbnailArguments ParseThumbnailArguments(const std::vector<std::string>& vArguments) {
    TThumbnailArguments arguments;
    const auto readSide = [&](const std::string& str) { arguments.nSide = ReadSide(str); };
    const auto vNames = ReadCommandLine(vArguments, {{"--size", {}, readSide},
                                                     {"-s", {}, readSide},
                                                     Flag("--verbose", arguments.bVerbose),
                                                     Flag("--help", arguments.bHelp)});
    if (arguments.bHelp) return arguments;
    if (vNames.size() != 2 || vNames[0].empty() || vNames[1].empty())
        throw usage_error("two files are to be named");
    arguments.pathIn = vNames[0];
    arguments.pathOut = vNames[1];
    std::error_code error;
    if (std::filesystem::equivalent(arguments.pathIn, arguments.pathOut, error))
        throw usage_error("the picture would overwrite " + arguments.pathIn.native());
    return arguments;
}
