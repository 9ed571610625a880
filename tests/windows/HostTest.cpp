#include "core/Base/Resource.h"
#include "tests/windows/WindowsHost.h"

#include <psapi.h>

namespace {

constexpr int PIPL_ID = 16000;

/// A host without the suite that the module needs.
class CPoorHost : public CPictureHost {
public:
    using CPictureHost::CPictureHost;

protected:
    hostabi::SPErr AcquireSuite(const char*, int32_t, const void**) override { return 0x53214664; }
};

size_t CommittedBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

TEST_F(CWindowsHost, ReadsThePropertyListAndOneExport) {
    const HMODULE hData = LoadLibraryExW(m_pathModule.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const HRSRC hFound = FindResourceW(hData, MAKEINTRESOURCEW(PIPL_ID), L"PiPL");
    ASSERT_TRUE(hFound);
    EXPECT_EQ(SizeofResource(hData, hFound), 278U);
    const auto* pBytes = static_cast<const char*>(LockResource(LoadResource(hData, hFound)));
    EXPECT_EQ(std::string_view(pBytes, 278), FindResource("pipl64.bin"));
    EXPECT_TRUE(FindResourceW(hData, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16)))
        << "About shows versions";
    FreeLibrary(hData);

    const HMODULE hModule = Load();
    const auto* pBase = reinterpret_cast<const char*>(hModule);
    const auto* pHeader = reinterpret_cast<const IMAGE_NT_HEADERS*>(
        pBase + reinterpret_cast<const IMAGE_DOS_HEADER*>(pBase)->e_lfanew);
    const auto* pExports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(
        pBase + pHeader->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);
    EXPECT_EQ(pExports->NumberOfFunctions, 1U);
    ASSERT_EQ(pExports->NumberOfNames, 1U);
    EXPECT_STREQ(pBase + reinterpret_cast<const DWORD*>(pBase + pExports->AddressOfNames)[0], "PluginMain");
    FreeLibrary(hModule);
}

TEST_F(CWindowsHost, LoadsAndUnloadsUntilASessionHasRun) {
    CFileStore files;
    const CScriptSettings settings(WriteScript(DRAW), false, files);
    for (int n = 0; n < 3; ++n) {
        const HMODULE hModule = Load();
        int16_t nResult = 0;
        MainOf(hModule)(6, nullptr, nullptr, &nResult);
        EXPECT_EQ(nResult, hostabi::filterBadParameters);
        FreeLibrary(hModule);
        EXPECT_FALSE(IsLoaded());
    }
    for (int n = 0; n < 3; ++n) {
        const HMODULE hModule = Load();
        EXPECT_EQ(CPoorHost(WhitePicture()).Run(MainOf(hModule)), hostabi::errPlugInHostInsufficient);
        CPictureHost host(WhitePicture());
        EXPECT_EQ(host.Run(MainOf(hModule)), 0);
        EXPECT_LT(host.GetPicture().vRed[MIDDLE], 64);
        FreeLibrary(hModule);
        EXPECT_TRUE(IsLoaded()) << "its threads cannot be unloaded";
    }
}

TEST_F(CWindowsHost, FortySessionsAreAlikeAndKeepNoMemory) {
    CFileStore files;
    const CScriptSettings settings(WriteScript(DRAW), false, files);
    const auto pMain = MainOf(Load());
    THostPicture::TPlane vFirst;
    size_t uBefore = 0;
    for (int n = 0; n < 40; ++n) {
        if (n == 5) uBefore = CommittedBytes();
        CPictureHost host(WhitePicture());
        ASSERT_EQ(host.Run(pMain), 0);
        ASSERT_EQ(settings.GetFailure(), "");
        if (n == 0) vFirst = host.GetPicture().vRed;
        ASSERT_EQ(host.GetPicture().vRed, vFirst) << n;
    }
    EXPECT_LT(vFirst[MIDDLE], 64);
    EXPECT_EQ(vFirst[10 * SIDE + 50], 255);
    const size_t uAfter = CommittedBytes();
    std::printf("committed bytes: %zu after 5 sessions, %zu after 40\n", uBefore, uAfter);
    ASSERT_GT(uBefore, 0U);
    EXPECT_LT(uAfter, uBefore + (size_t{4} << 20));
}

} // namespace
