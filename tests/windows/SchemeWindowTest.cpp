#include "ui/base/DesktopScheme.h"
#include "ui/base/QtApplication.h"

#include <QTest>

#include <gtest/gtest.h>

#include <windows.h>

TEST(RegistryScheme, FollowsTheUsersChoice) {
    constexpr wchar_t KEY[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                      TEST[] = L"Software\\Vellumcraft Scheme Test";
    ASSERT_TRUE(EnsureApplication());
    HKEY hTest = nullptr, hKey = nullptr;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, TEST, &hTest), ERROR_SUCCESS);
    RegOverridePredefKey(HKEY_CURRENT_USER, hTest); // not the user's own choice
    EXPECT_EQ(WatchDesktopScheme([] {})->IsDark(), std::nullopt) << "no key";
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, KEY, &hKey), ERROR_SUCCESS);
    const auto set = [&](DWORD uValue, const wchar_t* pszName = L"AppsUseLightTheme") {
        RegSetValueExW(hKey, pszName, 0, REG_DWORD, reinterpret_cast<BYTE*>(&uValue), sizeof uValue);
    };
    set(0);
    int nChanges = 0;
    {
        const auto pScheme = WatchDesktopScheme([&] { ++nChanges; });
        const auto isAt = [&](int n) { return QTest::qWaitFor([&] { return nChanges == n; }); };
        EXPECT_EQ(pScheme->IsDark(), true);
        set(1);
        EXPECT_TRUE(isAt(1) && pScheme->IsDark() == false);
        set(0);
        EXPECT_TRUE(isAt(2) && pScheme->IsDark() == true) << "reported again";
        set(1, L"Another");
        QTest::qWait(100);
        EXPECT_EQ(nChanges, 2) << "another value of the same key";
        RegDeleteValueW(hKey, L"AppsUseLightTheme");
        EXPECT_TRUE(isAt(3) && pScheme->IsDark() == std::nullopt);
    }
    RegCloseKey(hKey);
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(hTest);
    RegDeleteTreeW(HKEY_CURRENT_USER, TEST);
}
