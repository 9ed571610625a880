// vellumcraft-session SCRIPT: plays session scripts without a display.
#include "app/common/Console.h"
#include "app/common/ModuleCall.h"
#include "app/common/PictureFiles.h"
#include "app/session/Arguments.h"
#include "app/session/Batch.h"
#include "app/session/DesktopSession.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/ImageFile/ImageFile.h"
#include "system/files/FilePath.h"
#include "system/files/FileStore.h"
#include "system/pictures/ImageCodecs.h"

#include <iostream>
#include <new>

namespace {

void PlayOver(const TArguments& arguments, IFileStore& files, IImageCodecs& codecs) {
    CPictureHost host(LoadPicture(arguments.pathIn, codecs));
    CallModule(host, {arguments.pathModule, arguments.pathScript, false, {}}, files);
    if (!arguments.pathOut.empty()) SavePicture(arguments.pathOut, host.GetPicture(), codecs);
}

int Run(const TArguments& arguments) {
    CFileStore files;
    CImageCodecs codecs(files);
    codecs.Startup();
    // The module parses it again; here its errors are reported before anything is played.
    TScript script;
    if (!arguments.pathScript.empty()) script = ReadScript(TextOf(arguments.pathScript), files);
    const bool bBatch = !arguments.strEach.empty();
    const bool bDesktop = arguments.bDesktop || (!bBatch && arguments.pathIn.empty());
    const auto isKnown = [&](const std::string& strName) {
        return bDesktop ? CanWriteDesktop(strName, codecs) : codecs.CanSave(FromUtf8(strName));
    };
    if (!arguments.strFormat.empty() && !isKnown("page." + arguments.strFormat))
        throw usage_error("--format " + arguments.strFormat + ": no format of results");
    if (bBatch) return RunBatch(arguments) ? 0 : 1;
    if (!arguments.pathOut.empty()) CheckSave(arguments.pathOut, isKnown(Utf8Of(arguments.pathOut)));
    if (bDesktop)
        PlayDesktop(script, arguments.pathIn, arguments.pathOut, files, codecs);
    else
        PlayOver(arguments, files, codecs);
    return 0;
}

int Fail(int nCode, const std::string& strReason) {
    std::cerr << "vellumcraft-session: " << strReason << '\n';
    return nCode;
}

} // namespace

int main(int nArguments, char** ppszArguments) {
    const CConsole console(nArguments, ppszArguments);
    try {
        const TArguments arguments = ParseArguments(console.GetArguments());
        if (!arguments.bHelp) return Run(arguments);
        std::cout << USAGE;
        return 0;
    } catch (const usage_error& e) {
        return Fail(2, std::string(e.what()) + "\n\n" + USAGE);
    } catch (const script_error& e) {
        return Fail(2, e.what());
    } catch (const std::bad_alloc&) {
        return Fail(1, "out of memory");
    } catch (const std::runtime_error& e) {
        return Fail(1, e.what());
    } catch (const std::exception& e) {
        return Fail(1, ToUtf8(DescribeException(e)));
    }
}
