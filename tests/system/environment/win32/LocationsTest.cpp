#include "system/environment/Locations.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

TEST(Locations, FollowTheVariableAtEachCall) {
    CLocations locations;
    for (const char* psz : {"C:\\x\\設定\\\\", "C:/x/設定/", "", "relative\\path", "\\x"}) {
        SetVariable(CLocations::APP_DATA_VARIABLE, psz);
        const std::wstring strFolder = locations.GetAppData();
        EXPECT_EQ(std::filesystem::path(strFolder),
                  *psz == 'C' ? PathOf(L"C:/x/設定") : PathOf(GetVariable("APPDATA")))
            << psz;
    }
    SetVariable(CLocations::APP_DATA_VARIABLE, {});
    const CTempFolder folder;
    for (int i = 0; i < 2; ++i) locations.MakeFolder(TextOf(folder.File("a/絵/c")));
    EXPECT_TRUE(std::filesystem::is_directory(folder.File("a/絵/c")));
}
