// vellum-make-manual FROM TO: the manual's files as they are read, with the built-in keys in its pages.
#include "app/common/Console.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/Commands/Shortcuts.h"
#include "core/MainFrame/Manual.h"
#include "system/files/FilePath.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

std::string ReadPage(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) throw std::runtime_error("cannot read " + Utf8Of(path));
    return {std::istreambuf_iterator<char>(stream), {}};
}

void WritePage(const fs::path& path, const std::string& strHtml) {
    std::ofstream stream(path, std::ios::binary);
    stream << strHtml;
    if (!stream.flush()) throw std::runtime_error("cannot write " + Utf8Of(path));
}

void MakeManual(const fs::path& from, const fs::path& to) {
    fs::remove_all(to);
    fs::create_directories(to / "pictures");
    for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
        const fs::path target = to / entry.path().filename();
        if (entry.path().extension() == ".html")
            WritePage(target, FillKeys(ReadPage(entry.path()), CShortcuts::GetDefault()));
        else if (entry.path().extension() == ".css")
            fs::copy_file(entry.path(), target);
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(from / "pictures"))
        fs::copy_file(entry.path(), to / "pictures" / entry.path().filename());
}

} // namespace

int main(int argc, char** argv) {
    const CConsole console(argc, argv);
    try {
        const std::vector<std::string>& vNames = console.GetArguments();
        if (vNames.size() != 2) throw std::runtime_error("usage: vellum-make-manual FROM TO");
        MakeManual(PathOf(vNames[0]), PathOf(vNames[1]));
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "vellum-make-manual: %s\n", ToUtf8(DescribeException(e)).c_str());
        return 1;
    }
}
