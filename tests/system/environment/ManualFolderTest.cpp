#include "system/environment/ManualFolder.h"

#include "tests/support/TempFolder.h"

#include "TestPaths.h"

#include <gtest/gtest.h>

#include <fstream>

TEST(ManualFolder, IsBesideTheModule) {
    const CTempFolder folder;
    const auto find = [&](const char* pszModule) { return FindManual(folder.File(pszModule), {}); };
    EXPECT_EQ(find("usr/bin/program"), "");
    const auto path = folder.File("usr/share/vellumcraft/manual");
    std::filesystem::create_directories(path);
    std::ofstream(path / "index.html") << "page";
    EXPECT_EQ(find("usr/bin/program"), path);
    EXPECT_EQ(find("usr/lib/machine/vellumcraft/vellumcraft.8bf"), path);
    EXPECT_EQ(find("elsewhere/vellumcraft.8bf"), "");
    EXPECT_TRUE(std::filesystem::equivalent(FindManual(), VELLUM_BUILD "/share/vellumcraft/manual"));
}
