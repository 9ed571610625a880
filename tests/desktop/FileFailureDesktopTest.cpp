#include "core/AppModule/ErrorBox.h"
#include "tests/session/ScriptedSession.h"

#include <gtest/gtest.h>

namespace {

class FileFailureDesktop : public testing::Test, protected CScriptedSession {
protected:
    void ExpectBox(const char* pszVerb, const char* pszPath, const std::wstring& strText) {
        const std::string strScript = nlohmann::json{{pszVerb, pszPath}}.dump() + "\n" +
                                      nlohmann::json{{"expect", {{"box", ToUtf8(strText)}}}}.dump() +
                                      "\n{\"answer\":{\"box\":\"no\"}}\n{\"close\":\"main\"}";
        EXPECT_EQ(Play(strScript), "") << pszPath;
    }
    static std::wstring NotOpened(const char* pszPath, EFileFailure failure) {
        return L"ファイルを開けませんでした。\nFile: '" + FromUtf8(pszPath) + L"'\n\n" + AdviceFor(failure);
    }
};

} // namespace

TEST_F(FileFailureDesktop, SavingTellsWhatTheDiskRefused) {
    m_files.m_bReadOnly = true;
    m_files.m_failure = EFileFailure::DiskFull;
    for (const auto& [pszVerb, pszPath] :
         {std::pair{"save", "絵.vlm"}, {"export", "絵.png"}, {"export", "絵.psd"}, {"export", "絵.svg"}})
        ExpectBox(pszVerb, pszPath, NotOpened(pszPath, EFileFailure::DiskFull));
    ExpectBox("export", "絵.xyz", NotOpened("絵.xyz", EFileFailure::UnknownEnding));
}

TEST_F(FileFailureDesktop, OpeningTellsWhatIsWrongWithTheFile) {
    const auto spBitmap = m_codecs.CreateBitmap({20, 20});
    m_codecs.Save(L"cut.png", *spBitmap);
    m_files.m_mapFiles[L"cut.png"].resize(60);
    m_files.m_mapFiles[L"text.png"] = "no picture";
    m_files.m_mapFiles[L"layers.psd"] = std::string("8BPS\0\1", 6);
    m_files.m_mapFiles[L"bad.vlm"] = "no project";
    m_files.m_mapFiles[L"short.vlm"] = "";
    m_codecs.Save(L"wide.bmp", *spBitmap);
    m_files.m_mapFiles[L"wide.bmp"].replace(18, 4, "\x31\x75\0\0", 4); // 30001 columns
    m_files.m_mapFiles[L"wide.bmp"].resize(2 << 20);
    for (const auto& [pszPath, failure] : {std::pair{"cut.png", EFileFailure::DamagedPicture},
                                           {"text.png", EFileFailure::UnknownPicture},
                                           {"layers.psd", EFileFailure::WriteOnlyPicture},
                                           {"none.png", EFileFailure::Missing},
                                           {"wide.bmp", EFileFailure::PictureTooLarge}})
        ExpectBox("open", pszPath, L"画像" + NotOpened(pszPath, failure));
    ExpectBox("open", "none.vlm", NotOpened("none.vlm", EFileFailure::Missing));
    for (const char* psz : {"bad.vlm", "short.vlm"})
        ExpectBox("open", psz,
                  L"データファイルが破損しています。\nFile: '" + FromUtf8(psz) +
                      L"'\n\nバックアップがあれば、そちらを開いてください。");
}

TEST_F(FileFailureDesktop, WhatAFormatRefusesNamesTheFile) {
    CSessionPlatform session(m_parts);
    const CSessionScope scope(session.GetPlatform());
    ReportFileException(refused_error(L"大きすぎます。"), L"絵.psd");
    EXPECT_EQ(session.GetLog().GetShown().back().strText, L"大きすぎます。\n\nFile: '絵.psd'");
}
