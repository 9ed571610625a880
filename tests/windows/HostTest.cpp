// The filter module in a host for Windows: loaded from a folder of its own, called many times, unloaded.
#include "app/common/ScriptSettings.h"
#include "core/Base/Resource.h"
#include "host/PictureHost/PictureHost.h"
#include "system/files/FilePath.h"
#include "tests/support/TempFolder.h"

#include "TestPaths.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <psapi.h>

namespace {

constexpr int PIPL_ID = 16000;
constexpr int SIDE = 100;
constexpr size_t MIDDLE = 50 * SIDE + 50;
/// A black line of the mouse through the middle.
constexpr char DRAW[] = R"({"wait":2000}
{"mouse":{"message":"ldown","x":80,"y":400}}
{"mouse":{"x":400,"y":400}}
{"mouse":{"x":720,"y":400}}
{"mouse":{"message":"lup","x":720,"y":400}}
{"wait":500}
{"command":"file-close"}
)";

THostPicture WhitePicture() {
    const THostPicture::TPlane vWhite(SIDE * SIDE, 255);
    return {CRect({0, 0}, {SIDE, SIDE}), vWhite, vWhite, vWhite, {}, {}};
}

/// A host without the suite that the module needs.
class CPoorHost : public CPictureHost {
public:
    using CPictureHost::CPictureHost;

protected:
    hostabi::SPErr AcquireSuite(const char*, int32_t, const void**) override { return 0x53214664; }
};

class CWindowsHost : public testing::Test {
protected:
    CWindowsHost() : m_pathModule(m_folder.GetPath() / PathOf(L"プラグイン 𠮷") / "vellumcraft.8bf") {
        std::filesystem::create_directories(m_pathModule.parent_path());
        std::filesystem::copy_file(PathOf(std::string_view(VELLUM_MODULE)), m_pathModule);
    }
    HMODULE Load() {
        const HMODULE hModule = LoadLibraryW(m_pathModule.c_str());
        EXPECT_TRUE(hModule) << GetLastError();
        return hModule;
    }
    static hostabi::PluginMainProc MainOf(HMODULE hModule) {
        return reinterpret_cast<hostabi::PluginMainProc>(
            reinterpret_cast<void*>(GetProcAddress(hModule, "PluginMain")));
    }
    bool IsLoaded() const { return GetModuleHandleW(m_pathModule.c_str()) != nullptr; }
    std::filesystem::path WriteScript(const char* pszLines) {
        const auto path = m_folder.File("script.jsonl");
        CFileStore().Replace(TextOf(path), pszLines);
        return path;
    }

    CTempFolder m_folder;
    const std::filesystem::path m_pathModule;
};

size_t PrivateBytes() {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                         sizeof counters);
    return counters.PrivateUsage;
}

TEST_F(CWindowsHost, ReadsThePropertyListAndOneExport) {
    const HMODULE hData = LoadLibraryExW(m_pathModule.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const HRSRC hFound = FindResourceW(hData, MAKEINTRESOURCEW(PIPL_ID), L"PiPL");
    ASSERT_TRUE(hFound);
    EXPECT_EQ(SizeofResource(hData, hFound), 278U);
    const auto* pBytes = static_cast<const char*>(LockResource(LoadResource(hData, hFound)));
    EXPECT_EQ(std::string_view(pBytes, 278), FindResource("pipl64.bin"));
    EXPECT_TRUE(FindResourceW(hData, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION))
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
        EXPECT_LT(host.GetPicture().vRed[MIDDLE], 30);
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
        if (n == 5) uBefore = PrivateBytes();
        CPictureHost host(WhitePicture());
        ASSERT_EQ(host.Run(pMain), 0);
        ASSERT_EQ(settings.GetFailure(), "");
        if (n == 0) vFirst = host.GetPicture().vRed;
        ASSERT_EQ(host.GetPicture().vRed, vFirst) << n;
    }
    EXPECT_LT(vFirst[MIDDLE], 30);
    EXPECT_EQ(vFirst[10 * SIDE + 50], 255);
    const size_t uAfter = PrivateBytes();
    std::printf("private bytes: %zu after 5 sessions, %zu after 40\n", uBefore, uAfter);
    EXPECT_LT(uAfter, uBefore + (size_t{4} << 20));
}

} // namespace
