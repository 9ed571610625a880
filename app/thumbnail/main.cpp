// vellumcraft-thumbnailer: small pictures of project files for file managers. It links no Qt, so that it
// starts quickly.
#include "app/common/CommandLine.h"
#include "app/thumbnail/Arguments.h"
#include "app/thumbnail/Limits.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/ImageFile/ProjectThumbnail.h"
#include "system/files/FileStore.h"
#include "system/files/OutputFile.h"
#include "system/pictures/PngBytes.h"

#include <iostream>
#include <new>

namespace {

// Returns why there is no picture; empty when there is one.
std::string MakeThumbnail(const TThumbnailArguments& arguments) {
    try {
        CFileStore files;
        const std::wstring strIn = FromUtf8(arguments.pathIn.native());
        const auto spPicture = ReadThumbnail(files.Open(strIn), strIn, arguments.nSide);
        const CFileOutcome outcome = WriteOutput(arguments.pathOut, EncodePng(*spPicture));
        if (!outcome) throw fileopen_error(FromUtf8(arguments.pathOut.native()), outcome.GetFailure());
        return {};
    } catch (const fileopen_error& e) {
        return ToUtf8(e.message + L": " + AdviceFor(e.failure));
    } catch (const deserialize_error&) {
        return arguments.pathIn.native() + ": " + ToUtf8(AdviceFor(EFileFailure::DamagedDocument));
    } catch (const std::bad_alloc&) {
        return arguments.pathIn.native() + ": " + ToUtf8(AdviceFor(EFileFailure::NoMemory));
    } catch (const std::exception& e) {
        return ToUtf8(DescribeException(e));
    }
}

} // namespace

int main(int nArguments, char** ppszArguments) {
    try {
        const auto arguments = ParseThumbnailArguments({ppszArguments + 1, ppszArguments + nArguments});
        if (arguments.bHelp) {
            std::cout << THUMBNAIL_USAGE;
            return 0;
        }
        LimitProcess();
        const std::string strReason = MakeThumbnail(arguments);
        if (!strReason.empty() && arguments.bVerbose)
            std::cerr << "vellumcraft-thumbnailer: " << strReason << '\n';
        return strReason.empty() ? 0 : 1;
    } catch (const usage_error& e) {
        std::cerr << "vellumcraft-thumbnailer: " << e.what() << "\n\n" << THUMBNAIL_USAGE;
        return 2;
    }
}
