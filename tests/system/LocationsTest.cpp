#include "system/Locations.h"
#include "system/Modules.h"
#include "system/TickClock.h"

#include "core/Base/Text.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Sets a variable, null to remove it, and puts the old value back.
class CVariable {
public:
    CVariable(const char* pszName, const char* pszValue) : m_pszName(pszName) {
        if (const char* pszOld = std::getenv(pszName)) m_strOld = pszOld;
        Set(pszValue);
    }
    ~CVariable() { Set(m_strOld ? m_strOld->c_str() : nullptr); }
    void Set(const char* pszValue) { pszValue ? setenv(m_pszName, pszValue, 1) : unsetenv(m_pszName); }

private:
    const char* m_pszName;
    std::optional<std::string> m_strOld;
};

} // namespace

TEST(Locations, FollowTheEnvironmentAtEachCall) {
    CLocations locations;
    CVariable xdg("XDG_CONFIG_HOME", "/x/設定//");
    CVariable home("HOME", "/home/me");
    EXPECT_EQ(locations.GetAppData(), L"/x/設定");
    for (const char* pszIgnored : {static_cast<const char*>(nullptr), "", "relative/path"}) {
        xdg.Set(pszIgnored);
        EXPECT_EQ(locations.GetAppData(), L"/home/me/.config");
    }
    home.Set(nullptr);
    const passwd* pEntry = getpwuid(getuid());
    ASSERT_TRUE(pEntry);
    EXPECT_EQ(locations.GetAppData(), FromUtf8(pEntry->pw_dir) + L"/.config");
}

TEST(Locations, MakesFoldersForTheUserAlone) {
    CTempFolder folder;
    CLocations locations;
    for (int i = 0; i < 2; ++i) locations.MakeFolder(FromUtf8(folder.File("a/b/c").native()));
    struct stat status {};
    ASSERT_EQ(stat(folder.File("a/b/c").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    locations.MakeFolder(L"/proc/self/never/made");
    locations.MakeFolder(L"");
}

TEST(Modules, AreFoundByLooseNames) {
    CModules modules;
    EXPECT_TRUE(std::filesystem::equivalent(ToUtf8(modules.GetProgram().strPath), "/proc/self/exe"));
    for (const wchar_t* pszName : {L"QT6CORE", L"libQt6Core", L"libqt6core.so", L"libQt6Core.so.6"})
        EXPECT_NE(modules.GetLibrary(pszName).strPath.find(L"/libQt6Core.so"), std::wstring::npos) << pszName;
    for (const wchar_t* pszName : {L"wintab32", L"Qt6", L"", L"lib"})
        EXPECT_EQ(modules.GetLibrary(pszName).strPath, L"") << pszName;
}

TEST(TickClock, CountsMilliseconds) {
    CTickClock clock;
    const uint32_t uStart = clock.GetTickCount();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const uint32_t uPassed = clock.GetTickCount() - uStart;
    EXPECT_GE(uPassed, 29u);
    EXPECT_LT(uPassed, 20000u);
}
