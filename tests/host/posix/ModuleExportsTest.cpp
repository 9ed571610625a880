#include "core/Base/Resource.h"
#include "tests/support/TempFolder.h"

#include "TestPaths.h"

#include <gtest/gtest.h>

namespace {

/// The content of the file that a command writes; its name is appended to the command.
std::string OutputOf(const std::string& strCommand) {
    CTempFolder folder;
    const std::string strFile = folder.File("out").native();
    EXPECT_EQ(std::system((strCommand + strFile).c_str()), 0) << strCommand;
    return CFileStore().Read(FromUtf8(strFile)).value_or("");
}

TEST(Module, PluginMainIsTheOnlyExport) {
    const std::string strSymbols = OutputOf("nm -D --defined-only --extern-only '" VELLUM_MODULE "' >");
    EXPECT_TRUE(strSymbols.ends_with(" T PluginMain\n")) << strSymbols;
    EXPECT_EQ(strSymbols.find('\n') + 1, strSymbols.size()) << strSymbols;
}

TEST(Module, CarriesThePropertyList) {
    EXPECT_EQ(OutputOf("objcopy -O binary --only-section=.pipl '" VELLUM_MODULE "' "),
              FindResource("pipl64.bin"));
    EXPECT_EQ(std::system("python3 '" VELLUM_SOURCE "/tools/make_pipl.py' --check"), 0) << "an old table";
}

} // namespace
