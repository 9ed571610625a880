#include "app/session/Worker.h"

#include "app/session/Pattern.h"
#include "app/session/win32/CommandText.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <map>

#include <windows.h>

#include <shellapi.h>

namespace {

namespace fs = std::filesystem;

TEST(CommandText, IsReadAsItWasWritten) {
    const std::vector<std::string> vArguments{"C:\\a b\\絵.exe", "",   "a b",   "\"",     "\\\"",    "c\\",
                                              "d\\\\ \\\\\"e\"", "\t", "plain", "\\\\\\", "--x=\"\\"};
    int nRead = 0;
    wchar_t** const ppszRead = CommandLineToArgvW(CommandText(vArguments).c_str(), &nRead);
    std::vector<std::string> vRead;
    for (int n = 0; n < nRead; ++n) vRead.push_back(ToUtf8(ppszRead[n]));
    LocalFree(ppszRead);
    EXPECT_EQ(vRead, vArguments);
}

// More than the system waits for at once.
TEST(Worker, EachOfManyEndsOnceWithItsCode) {
    const CTempFolder folder;
    const std::string strShell = GetVariable("SystemRoot") + "\\system32\\cmd.exe";
    std::map<TProcessId, int> mapCodes;
    for (int n = 0; n < 70; ++n)
        mapCodes[StartWorker({strShell, "/c", "exit " + std::to_string(n)}, folder.File(std::to_string(n)))] =
            n;
    while (!mapCodes.empty()) {
        const TEnded ended = WaitForWorker();
        ASSERT_TRUE(mapCodes.contains(ended.id));
        const int nCode = mapCodes.extract(ended.id).mapped();
        EXPECT_EQ(DescribeEnd(ended, folder.File(std::to_string(nCode))),
                  nCode == 0 ? "" : "exit code " + std::to_string(nCode));
    }
    EXPECT_THAT([&] { StartWorker({"C:\\none\\絵.exe"}, folder.File("said")); },
                testing::ThrowsMessage<std::runtime_error>(
                    testing::AllOf(testing::StartsWith("C:\\none\\絵.exe: "), testing::EndsWith(")"))));
}

TEST(Worker, ItsOutputIsTheReason) {
    const CTempFolder folder;
    const auto pathSaid = folder.File("絵 said");
    // Without input the shell reads nothing and ends.
    StartWorker({GetVariable("SystemRoot") + "\\system32\\cmd.exe", "/q", "/k", "echo why"}, pathSaid);
    const TEnded ended = WaitForWorker();
    EXPECT_TRUE(ended.strCrashed.empty());
    EXPECT_EQ(DescribeEnd({ended.id, 1, {}}, pathSaid).substr(0, 3), "why");
    EXPECT_EQ(DescribeEnd({ended.id, 1, "ended by chance"}, pathSaid), "ended by chance");
}

TEST(Pattern, MatchesWholeNamesWithoutCase) {
    const CTempFolder folder;
    fs::create_directory(folder.File("絵"));
    fs::create_directory(folder.File("絵/z.png"));
    for (const char* psz : {"B.PNG", "a.png", "aa.png", "c.pngx", "絵 1.png", "a.p"})
        std::ofstream(folder.File("絵") / PathOf(psz)) << "x";
    const auto find = [&](const char* pszPattern) {
        std::string strNames;
        for (const fs::path& path : FindFiles(Utf8Of(folder.GetPath()) + "/絵/" + pszPattern)) {
            EXPECT_TRUE(Utf8Of(path).ends_with("/絵/" + Utf8Of(path.filename()))) << "as it was typed";
            strNames += Utf8Of(path.filename()) + ",";
        }
        return strNames;
    };
    EXPECT_EQ(find("*.png"), "B.PNG,a.png,aa.png,絵 1.png,");
    EXPECT_EQ(find("?.png"), "B.PNG,a.png,");
    EXPECT_EQ(find("*A*.p*"), "a.p,a.png,aa.png,");
    EXPECT_EQ(find("b.png"), "B.PNG,");
    EXPECT_EQ(find("絵*1*"), "絵 1.png,");
    EXPECT_EQ(find("x*"), "");
    EXPECT_TRUE(FindFiles(Utf8Of(folder.File("none/*"))).empty());
    EXPECT_EQ(FoldName(PathOf("Ä絵.png")), FoldName(PathOf("ä絵.PNG")));
}

} // namespace
