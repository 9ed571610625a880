#include "system/environment/Locations.h"
#include "system/environment/Modules.h"

#include "core/Base/Text.h"
#include "tests/support/TempFolder.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

TEST(Locations, FollowTheEnvironmentAtEachCall) {
    CLocations locations;
    const QByteArray bytesOldXdg = qgetenv("XDG_CONFIG_HOME"), bytesOldHome = qgetenv("HOME");
    qputenv("HOME", "/home/me");
    for (const char* pszXdg : {"/x/設定//", "", "relative/path"}) {
        qputenv("XDG_CONFIG_HOME", pszXdg);
        EXPECT_EQ(locations.GetAppData(), *pszXdg == '/' ? L"/x/設定" : L"/home/me/.config");
    }
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("HOME");
    EXPECT_EQ(locations.GetAppData(), FromUtf8(getpwuid(getuid())->pw_dir) + L"/.config");
    qputenv("XDG_CONFIG_HOME", bytesOldXdg);
    qputenv("HOME", bytesOldHome);
}

TEST(Locations, MakesFoldersForTheUserAlone) {
    CTempFolder folder;
    for (int i = 0; i < 2; ++i) CLocations().MakeFolder(FromUtf8(folder.File("a/b/c").native()));
    EXPECT_EQ(std::filesystem::status(folder.File("a/b/c")).permissions(), std::filesystem::perms{0700});
}

TEST(Modules, AreFoundByLooseNames) {
    CModules modules;
    EXPECT_TRUE(std::filesystem::equivalent(ToUtf8(modules.GetProgram().strPath), "/proc/self/exe"));
    for (const wchar_t* pszName : {L"QT6CORE", L"libQt6Core", L"libqt6core.so", L"libQt6Core.so.6"})
        EXPECT_NE(modules.GetLibrary(pszName).strPath.find(L"/libQt6Core.so"), std::wstring::npos) << pszName;
    for (const wchar_t* pszName : {L"wintab32", L"Qt6", L"", L"lib"})
        EXPECT_EQ(modules.GetLibrary(pszName).strPath, L"") << pszName;
}
