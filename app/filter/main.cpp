// A host for one picture file: passes it to the filter module and writes the result.
#include "app/common/Console.h"
#include "app/common/ModuleCall.h"
#include "app/common/PictureFiles.h"
#include "app/filter/Arguments.h"
#include "system/files/FilePath.h"
#include "system/files/FileStore.h"
#include "system/pictures/ImageCodecs.h"

#include <iostream>

namespace fs = std::filesystem;

namespace {

void RunFilter(const TArguments& arguments) {
    CFileStore files;
    CImageCodecs codecs(files);
    codecs.Startup();
    THostPicture picture = LoadPicture(arguments.pathIn, codecs);
    const CSize sz = picture.rc.Size();
    for (const fs::path& path : arguments.vAlphas) picture.vAlphas.push_back(LoadAlpha(path, sz, codecs));
    CheckSave(arguments.pathOut, codecs.CanSave(TextOf(arguments.pathOut)));

    CPictureHost host(std::move(picture));
    CallModule(host, {arguments.pathModule, arguments.pathScript, arguments.bWindows, arguments.pathRecord},
               files);

    SavePicture(arguments.pathOut, host.GetPicture(), codecs);
    for (size_t i = 0; i < arguments.vAlphaOut.size(); ++i)
        SaveAlpha(arguments.vAlphaOut[i], host.GetPicture().vAlphas[i], sz, codecs);
}

} // namespace

int main(int nArguments, char** ppszArguments) {
    const CConsole console(nArguments, ppszArguments);
    try {
        const TArguments arguments = ParseArguments(console.GetArguments());
        if (arguments.bHelp)
            std::cout << USAGE;
        else
            RunFilter(arguments);
        return 0;
    } catch (const usage_error& e) {
        std::cerr << "vellumcraft-filter: " << e.what() << "\n\n" << USAGE;
        return 2;
    } catch (const std::bad_alloc&) {
        std::cerr << "vellumcraft-filter: out of memory\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "vellumcraft-filter: " << e.what() << '\n';
        return 1;
    }
}
