#include "core/Base/Text.h"
#include "core/IniConfig/RecentDocumentList.h"
#include "system/environment/Locations.h"
#include "system/environment/Modules.h"
#include "system/environment/Variables.h"
#include "system/environment/win32/RegistryStore.h"
#include "system/files/FileLock.h"
#include "system/files/FilePath.h"
#include "system/files/FileStatus.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class CWindowsFiles : public testing::Test {
protected:
    EFileFailure Replace(const fs::path& path) {
        const CFileOutcome outcome = m_files.Replace(TextOf(path), "new");
        EXPECT_FALSE(outcome);
        return outcome.GetFailure();
    }
    std::string Read(const fs::path& path) { return m_files.Read(TextOf(path)).value_or("none"); }
    size_t CountFiles() const {
        return static_cast<size_t>(std::distance(fs::directory_iterator(m_folder.GetPath()), {}));
    }

    CTempFolder m_folder;
    CFileStore m_files;
};

TEST_F(CWindowsFiles, NamesAreWideAndPathsLong) {
    const fs::path folder =
        m_folder.GetPath() / PathOf(L"絵 𠮷") / std::wstring(120, L'長') / std::wstring(120, L'い');
    CLocations().MakeFolder(LR"(\\?\)" + folder.native());
    const fs::path path = folder / PathOf("\xE7\xB7\x9A.vlm");
    ASSERT_GT(path.native().size(), 260U);
    for (const char* psz : {"first", "second"}) {
        EXPECT_TRUE(m_files.Replace(TextOf(path), psz));
        EXPECT_EQ(Read(path), psz);
    }
    EXPECT_TRUE(Utf8Of(path).ends_with("\xE7\xB7\x9A.vlm"));
    EXPECT_TRUE(CFileLock(path, 0ms).IsLocked());
    fs::remove_all(fs::path(LR"(\\?\)" + m_folder.GetPath().native()));
}

TEST_F(CWindowsFiles, AFileThatCannotBeReplacedIsLeftAsItWas) {
    const fs::path path = m_folder.File("a.vlm");
    m_files.Replace(TextOf(path), "old");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(Replace(path), EFileFailure::NoWriteRight);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    {
        const HANDLE hOther =
            CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
        Replace(path);
        CloseHandle(hOther);
    }
    EXPECT_EQ(Read(path), "old");
    EXPECT_EQ(CountFiles(), 1U);
    EXPECT_EQ(Replace(m_folder.File("none/a.vlm")), EFileFailure::NoFolder);
    EXPECT_EQ(Replace(m_folder.File("nul")), EFileFailure::NotPlain);
    EXPECT_EQ(m_files.Read(TextOf(m_folder.File("nul"))).failure, EFileFailure::NotPlain);
    EXPECT_EQ(m_files.Read(TextOf(m_folder.GetPath())).failure, EFileFailure::NotPlain);
    EXPECT_EQ(Replace(m_folder.GetPath()), EFileFailure::NotPlain);
}

TEST_F(CWindowsFiles, ALockEndsWithItsHolder) {
    const fs::path path = m_folder.File("a.ini");
    for (int n = 0; n < 2; ++n) {
        const CFileLock lock(path, 0ms);
        EXPECT_TRUE(lock.IsLocked());
        EXPECT_FALSE(CFileLock(path, 20ms).IsLocked());
    }
    EXPECT_EQ(CountFiles(), 0U);
    const auto timeStart = std::chrono::steady_clock::now();
    EXPECT_FALSE(CFileLock(m_folder.File("none/a.ini"), 20s).IsLocked());
    EXPECT_LT(std::chrono::steady_clock::now() - timeStart, 10s) << "there is nobody to wait for";
}

TEST_F(CWindowsFiles, FoldersOfTheUserAndOfScripts) {
    SetVariable(CLocations::APP_DATA_VARIABLE, "");
    EXPECT_TRUE(CLocations().GetAppData().ends_with(LR"(\AppData\Roaming)"))
        << ToUtf8(CLocations().GetAppData());
    SetVariable(CLocations::APP_DATA_VARIABLE, Utf8Of(m_folder.File("設定\\")));
    EXPECT_EQ(CLocations().GetAppData(), TextOf(m_folder.File("設定")));
    SetVariable(CLocations::APP_DATA_VARIABLE, "");
    EXPECT_EQ(FileIdOf(m_folder.GetPath()), FileIdOf(m_folder.GetPath() / "."));
    EXPECT_TRUE(IsOpenFolder(m_folder.GetPath()) && !IsOpenFolder(m_folder.File("none")));
}

TEST_F(CWindowsFiles, ModulesTellPathAndVersion) {
    const TModuleInfo info = CModules().GetLibrary(L"kernel32");
    EXPECT_TRUE(EqualNoCase(FileNameOf(info.strPath), L"kernel32.dll"));
    EXPECT_TRUE(info.bResource && info.strVersion.find(L'.') != std::wstring::npos);
    EXPECT_EQ(CModules().GetLibrary(L"wintab33").strPath, L"");
    EXPECT_EQ(CModules::FindOwnFile(), fs::path(CModules().GetProgram().strPath));
}

TEST_F(CWindowsFiles, RecentDocumentsAreKeptInTheRegistry) {
    constexpr wchar_t KEY[] = L"Software\\Vellumcraft\\Recent Document List",
                      TEST[] = L"Software\\Vellumcraft Test";
    HKEY hTest = nullptr;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, TEST, &hTest), ERROR_SUCCESS);
    RegOverridePredefKey(HKEY_CURRENT_USER, hTest); // not the user's own list
    const auto value = [&](const wchar_t* pszName, DWORD uType) {
        wchar_t szText[64]{};
        DWORD uSize = sizeof szText;
        const bool bFound =
            RegGetValueW(HKEY_CURRENT_USER, KEY, pszName, uType, nullptr, szText, &uSize) == ERROR_SUCCESS;
        return bFound ? std::wstring(szText) : L"none";
    };
    CRegistryStore store(KEY);
    CRecentDocumentList list(store, L"RecentDocuments.ini");
    EXPECT_TRUE(list.GetPaths().empty());
    for (const wchar_t* psz : {L"C:\\a.vlm", L"C:\\絵 𠮷.vlm"}) list.Add(psz);
    EXPECT_EQ(value(L"DocumentCount", RRF_RT_REG_DWORD), std::wstring(1, 2));
    EXPECT_EQ(value(L"Document1", RRF_RT_REG_SZ), L"C:\\絵 𠮷.vlm");
    EXPECT_EQ(CRecentDocumentList(store, L"").GetPaths(), list.GetPaths());
    list.Remove(L"C:\\a.vlm");
    EXPECT_EQ(value(L"Document2", RRF_RT_REG_SZ), L"none");
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(hTest);
    RegDeleteTreeW(HKEY_CURRENT_USER, TEST);
}

} // namespace
