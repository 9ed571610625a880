#include "system/environment/posix/DesktopRecent.h"

#include "tests/support/MemoryFiles.h"
#include "tests/support/TempFolder.h"

#include <QByteArray>
#include <QXmlStreamReader>
#include <gmock/gmock.h>

namespace {

constexpr char OTHERS[] = R"(<?xml version="1.0"?>
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks">
  <!-- kept -->
  <bookmark href="file:///home/me/a%20b.png" added="2001-01-01T00:00:00Z" modified="2001-01-01T00:00:00Z">
    <title>mine &amp; yours</title>
    <info><metadata owner="http://freedesktop.org"><bookmark:groups><bookmark:group>Art</bookmark:group></bookmark:groups>
      <bookmark:applications><bookmark:application name="Viewer" exec="view" count="4"/></bookmark:applications>
    </metadata><metadata owner="http://else.where">own</metadata></info>
  </bookmark>
</xbel>)";

class DesktopRecent : public testing::Test {
protected:
    struct TBookmark {
        QXmlStreamAttributes attributes;
        std::string strType, strOwn; ///< type and count of the last application
    };

    /// Adds a file and reads the list.
    std::vector<TBookmark> Add(const std::wstring& strPath) {
        m_recent.Add(strPath);
        std::vector<TBookmark> vBookmarks;
        QXmlStreamReader xml(QByteArray::fromStdString(m_files.m_mapFiles[L"/list"]));
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement) continue;
            const QXmlStreamAttributes attributes = xml.attributes();
            const auto text = [&](const char* psz) { return attributes.value(psz).toString().toStdString(); };
            if (xml.name() == QLatin1String("bookmark")) vBookmarks.push_back({attributes, {}, {}});
            if (xml.name() == QLatin1String("mime-type")) vBookmarks.back().strType = text("type");
            if (xml.name() == QLatin1String("application"))
                vBookmarks.back().strOwn = text("name") + " " + text("count");
        }
        EXPECT_FALSE(xml.hasError()) << "its prefixes have names as well";
        return vBookmarks;
    }
    static std::string Value(const TBookmark& bookmark, const char* pszName) {
        return bookmark.attributes.value(pszName).toString().toStdString();
    }

    CMemoryFiles m_files;
    CDesktopRecent m_recent{m_files, L"/list"};
};

TEST_F(DesktopRecent, AFileIsEnteredOnceWithTypeAndApplication) {
    for (const char* pszCount : {"Vellumcraft 1", "Vellumcraft 2"}) {
        const auto vBookmarks = Add(L"/home/me/絵 1.vlm");
        ASSERT_EQ(vBookmarks.size(), 1U);
        EXPECT_EQ(Value(vBookmarks[0], "href"), "file:///home/me/%E7%B5%B5%201.vlm");
        EXPECT_TRUE(Value(vBookmarks[0], "added").ends_with('Z') &&
                    vBookmarks[0].attributes.hasAttribute("visited"));
        EXPECT_EQ(vBookmarks[0].strOwn, pszCount);
        EXPECT_EQ(vBookmarks[0].strType, "application/x-vellumcraft");
    }
}

TEST_F(DesktopRecent, WhatOthersHaveWrittenStays) {
    m_files.m_mapFiles[L"/list"] = OTHERS;
    const auto vBookmarks = Add(L"/home/me/a b.png");
    ASSERT_EQ(vBookmarks.size(), 1U);
    EXPECT_EQ(vBookmarks[0].strOwn, "Vellumcraft 1");
    EXPECT_EQ(vBookmarks[0].strType, "image/png");
    EXPECT_EQ(Value(vBookmarks[0], "added"), "2001-01-01T00:00:00Z");
    EXPECT_GT(Value(vBookmarks[0], "modified"), "2020");
    const std::string& strList = m_files.m_mapFiles[L"/list"];
    for (const char* psz :
         {"<!-- kept -->", "mine &amp; yours", ">Art<", "name=\"Viewer\"", "http://else.where", "own<"})
        EXPECT_NE(strList.find(psz), std::string::npos) << psz << strList;
}

TEST_F(DesktopRecent, ADamagedListIsLeftAlone) {
    for (const std::string str : {"<xbel version=\"1.0\"><bookmark", "<html/>", ""}) {
        m_files.m_mapFiles[L"/list"] = str;
        m_recent.Add(L"/home/me/a.png");
        EXPECT_EQ(m_files.m_mapFiles[L"/list"], str);
    }
    struct CDenied : CMemoryFiles {
        TFileBytes Read(const std::wstring&) override { return EFileFailure::NoReadRight; }
    } denied;
    CDesktopRecent(denied, L"/list").Add(L"/home/me/a.png");
    EXPECT_EQ(denied.m_nWrites, 0);
    CDesktopRecent(m_files, L"").Add(L"/home/me/a.png");
    EXPECT_EQ(m_files.m_mapFiles.size(), 1U);
}

TEST_F(DesktopRecent, OnlyTheNewestOfOwnEntriesStay) {
    m_files.m_mapFiles[L"/list"] = OTHERS;
    Add(L"/home/me/0.png");
    std::string& strList = m_files.m_mapFiles[L"/list"];
    strList[strList.find("modified=\"", strList.rfind("<bookmark ")) + 10] = '9'; // a year far ahead
    for (int n = 1; n < 53; ++n) Add(L"/home/me/" + std::to_wstring(n) + L".png");
    const auto vBookmarks = Add(L"/home/me/a b.png");
    ASSERT_EQ(vBookmarks.size(), 51U) << "another program's is not counted";
    EXPECT_EQ(Value(vBookmarks[1], "href"), "file:///home/me/0.png");
    EXPECT_EQ(Value(vBookmarks[2], "href"), "file:///home/me/4.png");
}

TEST(DesktopRecentFile, IsInTheUsersFolderForData) {
    const CTempFolder folder;
    const QByteArray bytesOld = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", folder.File("new/data").c_str());
    CFileStore files;
    CDesktopRecent(files, CDesktopRecent::FindFile()).Add(L"/home/me/a.png");
    EXPECT_GT(std::filesystem::file_size(folder.File("new/data/recently-used.xbel")), 100U);
    qputenv("XDG_DATA_HOME", bytesOld);
}

} // namespace
