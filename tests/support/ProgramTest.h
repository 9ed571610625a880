// Runs programs as their users do: in a temporary folder, without a display.
#pragma once

#include "core/Base/Text.h"
#include "system/files/FileStore.h"
#include "system/pictures/ImageCodecs.h"
#include "system/pictures/QtBitmap.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

class CProgramTest : public testing::Test {
protected:
    std::wstring Path(const std::string& strName) { return TextOf(m_folder.File(strName)); }
    /// Writes a file in the folder; creates the subfolders of its name.
    void Write(const std::string& strName, const std::string& strBytes) {
        std::filesystem::create_directories(m_folder.File(strName).parent_path());
        m_files.Replace(Path(strName), strBytes);
    }
    void SavePicture(const std::string& strName, const QImage& image) {
        Write(strName, "");
        ASSERT_TRUE(image.save(QString::fromStdWString(Path(strName))));
    }
    QImage LoadPicture(const std::string& strName) {
        const auto spBitmap = CImageCodecs(m_files).Load(Path(strName));
        return spBitmap ? static_cast<CQtBitmap&>(*spBitmap).GetImage() : QImage();
    }
    /// Runs a program inside the folder; see RunInFolder for arguments and result.
    int RunProgram(const std::string& strProgram, const std::string& strArguments) {
        const int nCode = RunInFolder(m_folder.GetPath(), strProgram, strArguments, m_strSaid);
        EXPECT_TRUE(std::filesystem::is_empty(m_folder.File(".tmp"))) << "something is left behind";
        return nCode;
    }
    bool Says(const std::string& str) const { return m_strSaid.find(str) != std::string::npos; }

    CTempFolder m_folder;
    CFileStore m_files;
    std::string m_strSaid; ///< output of the last run
};
