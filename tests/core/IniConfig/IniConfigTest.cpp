#include "core/IniConfig/IniConfig.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/RecentDocumentList.h"

#include "tests/support/MemoryFiles.h"
#include "tests/support/NoPlaces.h"

namespace {

const std::wstring PATH = L"/home/me/Vellumcraft.ini";

using TPaths = std::vector<std::wstring>;

} // namespace

TEST(IniConfig, SectionsNestByBackslashAndKeepNothing) {
    CMemoryFiles files;
    CIniConfig config(PATH, files);
    const auto spWindows = config.GetSection(L"Windows"), spMain = spWindows->GetSection(L"Main");
    EXPECT_EQ(spMain->GetInt(L"Left", 7), 7);
    EXPECT_EQ(files.m_nWrites, 0) << "reading makes no file";
    spMain->SetInt(L"Left", INT32_MIN);
    spWindows->SetString(L"Title", L"筆  ");
    EXPECT_EQ(files.m_mapFiles[PATH],
              ToUtf8(L"[Windows\\Main]\nLeft=-2147483648\n\n[Windows]\nTitle=\"筆  \"\n"));
    EXPECT_EQ(spWindows->GetString(L"Title", L""), L"筆  ");
    files.m_mapFiles[PATH] = "[Windows\\Main]\nLeft=5\n";
    EXPECT_EQ(spMain->GetInt(L"Left", 7), 5);
    spMain->SetInt(L"Left", 5);
    EXPECT_EQ(files.m_nWrites, 2) << "an equal value is no reason to write";
}

TEST(IniConfig, NumbersAndLongTextsAreReadAsProfilesDo) {
    const std::pair<const char*, int32_t> NUMBERS[] = {
        {"+3", 3}, {"42A9", 42}, {"abc", 0}, {"-0xfFg", -255}, {"-4294967297", -1}, {"", -99}, {"--1", 0}};
    CMemoryFiles files;
    CIniConfigData section(PATH, L"S", files);
    for (const auto& [pszText, nExpected] : NUMBERS) {
        files.m_mapFiles[PATH] = std::string("[S]\nk=") + pszText;
        EXPECT_EQ(section.GetInt(L"k", -99), nExpected) << pszText;
    }
    section.SetString(L"k", std::wstring(1022, L'a') + L"筆筆");
    EXPECT_EQ(section.GetString(L"k", L""), std::wstring(1022, L'a') + L"筆") << "long texts are cut";
    EXPECT_EQ(section.GetString(L"missing", std::wstring(2000, L'd')).size(), 1023u);
}

TEST(GlobalSwitches, DefaultsLimitsAndNames) {
    CMemoryFiles files;
    CIniConfig config(PATH, files);
    const auto loadAndSave = [&](const std::string& strFile) {
        TGlobalSwitches switches{0, 0, 3, 1, 0, 99, 77, 7};
        files.m_mapFiles[PATH] = strFile;
        switches.Load(config);
        files.m_mapFiles.clear();
        switches.Save(config);
        return files.m_mapFiles[PATH];
    };
    EXPECT_EQ(loadAndSave(""), "[Global]\nShowOutline=1\nShowAllCtl=1\nPredStroke=1\nFastScroll=0\n"
                               "EnableSSE2=1\nMaxHistory=10\nHistoryMegabytes=2048\nAutoSaveSeconds=60\n");
    EXPECT_EQ(loadAndSave("[Global]\nShowOutline=0\nShowAllCtl=0\nPredStroke=9\nFastScroll=256\n"
                          "EnableSSE2=0\nMaxHistory=0\nHistoryMegabytes=-5\nAutoSaveSeconds=-1\n"),
              "[Global]\nShowOutline=0\nShowAllCtl=0\nPredStroke=3\nFastScroll=1\n"
              "EnableSSE2=0\nMaxHistory=1\nHistoryMegabytes=1\nAutoSaveSeconds=0\n");
}

TEST(RecentDocumentList, NewestFirstAndAtMostFour) {
    CMemoryFiles files;
    CRecentDocumentList list(files, PATH);
    EXPECT_EQ(files.m_nReads, 0) << "read when first asked";
    for (const wchar_t* pszPath : {L"/a", L"/b", L"/c", L"/筆.vlm", L"/c", L"", L"/e"}) list.Add(pszPath);
    EXPECT_EQ(list.GetPaths(), (TPaths{L"/e", L"/c", L"/筆.vlm", L"/b"}));
    EXPECT_EQ(files.m_nWrites, 6) << "one a change";
}

TEST(RecentDocumentList, TakesUpOthersAndSurvivesBadFiles) {
    CMemoryFiles files;
    CRecentDocumentList listMine(files, PATH), listOther(files, PATH);
    listMine.Add(L"/mine");
    EXPECT_EQ(listOther.GetPaths(), TPaths{L"/mine"});
    listMine.Add(L"/mine2");
    listOther.Add(L"/other");
    EXPECT_EQ(listOther.GetPaths(), (TPaths{L"/other", L"/mine2", L"/mine"}));
    files.m_mapFiles[PATH] =
        "[Software\\Vellumcraft\\Recent Document List]\nDocumentCount=999999999999\nDocument1=\n"
        "Document3=/c\nDocument5=/e\n";
    EXPECT_EQ(CRecentDocumentList(files, PATH).GetPaths(), TPaths{});
    files.m_mapFiles[PATH].replace(files.m_mapFiles[PATH].find("999999999999"), 12, "77");
    EXPECT_EQ(CRecentDocumentList(files, PATH).GetPaths(), (TPaths{L"/c"}));
}
