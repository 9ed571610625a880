#include "system/environment/Locations.h"

#include "tests/support/TempFolder.h"

#include <QByteArray>

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
    for (int i = 0; i < 2; ++i) CLocations().MakeFolder(TextOf(folder.File("a/b/c")));
    EXPECT_EQ(std::filesystem::status(folder.File("a/b/c")).permissions(), std::filesystem::perms{0700});
}
