#include "core/Base/Text.h"

#include "TestPaths.h"

#include <gmock/gmock.h>

#include <windows.h>

// As from the desktop: no terminal, no streams.
TEST(CConsoleBox, AProgramWithoutStreamsComplainsInABox) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    std::wstring strCommand = FromUtf8("\"" VELLUM_DESKTOP "\" --絵");
    ASSERT_TRUE(CreateProcessW(nullptr, strCommand.data(), nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr,
                               nullptr, &start, &process));
    HWND hBox = nullptr;
    for (int n = 0; n < 2000 && !hBox; ++n) {
        Sleep(10);
        hBox = FindWindowW(L"#32770", L"Vellumcraft");
    }
    constexpr int TEXT_ID = 0xFFFF;
    wchar_t szText[4096]{};
    for (int n = 0; n < 100 && szText[0] == L'\0'; ++n) {
        Sleep(10);
        GetDlgItemTextW(hBox, TEXT_ID, szText, 4096);
    }
    EXPECT_THAT(ToUtf8(szText),
                testing::AllOf(testing::StartsWith("vellumcraft: "), testing::HasSubstr("--絵"),
                               testing::HasSubstr("\nusage: vellumcraft ")));
    PostMessageW(hBox, WM_COMMAND, IDOK, 0);
    DWORD uCode = 0;
    if (WaitForSingleObject(process.hProcess, 20000) != WAIT_OBJECT_0) TerminateProcess(process.hProcess, 99);
    EXPECT_TRUE(GetExitCodeProcess(process.hProcess, &uCode) && uCode == 2) << uCode;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}
