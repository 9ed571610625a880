// Runs programs as their users do: in a temporary folder, without a display.
#pragma once

#include "core/Base/Text.h"
#include "system/files/FileStore.h"
#include "system/pictures/ImageCodecs.h"
#include "system/pictures/QtBitmap.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

class CProgramTest : public testing::Test {
protected:
    std::wstring Path(const std::string& strName) { return FromUtf8(m_folder.File(strName).native()); }
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
    /// Runs a program inside the folder; returns its exit code, -1 for a signal.
    int RunProgram(const std::string& strProgram, const std::string& strArguments) {
        const std::string strCommand = "cd " + m_folder.GetPath().native() +
                                       " && mkdir -p .tmp && TMPDIR=$PWD/.tmp XDG_CONFIG_HOME=$PWD/.config "
                                       "env -u DISPLAY -u WAYLAND_DISPLAY "
                                       "-u QT_QPA_PLATFORM '" +
                                       strProgram + "' " + strArguments + " >.said 2>&1";
        const int nStatus = std::system(strCommand.c_str());
        m_strSaid = m_files.Read(Path(".said")).value_or("");
        EXPECT_TRUE(std::filesystem::is_empty(m_folder.File(".tmp"))) << "something is left behind";
        return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
    }
    bool Says(const std::string& str) const { return m_strSaid.find(str) != std::string::npos; }

    CTempFolder m_folder;
    CFileStore m_files;
    std::string m_strSaid; ///< output of the last run
};
