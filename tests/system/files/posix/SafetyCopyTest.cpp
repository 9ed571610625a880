#include "system/environment/Locations.h"
#include "system/files/SnapshotStore.h"
#include "tests/support/TempFolder.h"
#include "tests/support/posix/InProcess.h"

#include <fstream>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

class SafetyCopy : public testing::Test {
protected:
    SafetyCopy() {
        CFileStore().Replace(TextOf(m_path), m_strOld);
        chmod(m_settings.GetPath().c_str(), 0777);
        chmod(m_path.c_str(), 0666);
        chmod(m_folder.GetPath().c_str(), 0555);
    }
    ~SafetyCopy() override { chmod(m_folder.GetPath().c_str(), 0755); }

    bool Save(const std::string& str) {
        return AsPlainUser(0, [&] { return !!m_files.Replace(TextOf(m_path), str); });
    }
    // Saves, but no file can grow beyond `uLimit` after the copy was filled. The process ends there if
    // `bDies`.
    bool SaveFails(const std::string& str, rlim_t uLimit, EFileFailure failure, bool bDies = false) {
        return AsPlainUser(0, [&] {
            signal(SIGXFSZ, bDies ? SIG_DFL : SIG_IGN);
            const auto fill = [&](const TWriteBytes& fnWrite) {
                const rlimit limit{uLimit, uLimit};
                return fnWrite(str) && setrlimit(RLIMIT_FSIZE, &limit) == 0;
            };
            return m_files.ReplaceBy(TextOf(m_path), fill).GetFailure() == failure;
        });
    }
    std::string Content() { return m_files.Read(TextOf(m_path)).value_or(""); }
    ino_t Node() {
        struct stat status {};
        stat(m_path.c_str(), &status);
        return status.st_ino;
    }
    ptrdiff_t CountFiles(const fs::path& path) {
        return fs::exists(path) ? std::ranges::distance(fs::directory_iterator(path)) : 0;
    }

    const std::string m_strOld = std::string(1 << 20, 'o'), m_strNew = std::string(1 << 20, 'n');
    CTempFolder m_folder;
    CTestSettings m_settings;
    CLocations m_locations;
    CFileStore m_files{&m_locations};
    const fs::path m_path = m_folder.File("絵 1.vlm"),
                   m_pathRecovery = m_settings.File("Vellumcraft/Recovery");
};

} // namespace

TEST_F(SafetyCopy, AWritableFileIsSavedInAClosedFolder) {
    const ino_t uNode = Node();
    for (const std::string& str : {m_strNew + "longer", std::string("short"), std::string(), m_strNew}) {
        EXPECT_TRUE(Save(str));
        EXPECT_TRUE(Content() == str && Node() == uNode);
        EXPECT_TRUE(CountFiles(m_folder.GetPath()) == 1 && CountFiles(m_pathRecovery) == 0);
    }
    chmod(m_path.c_str(), 0444);
    EXPECT_FALSE(Save(m_strOld));
    chmod(m_path.c_str(), 0666);
    fs::remove_all(m_settings.GetPath());
    std::ofstream(m_settings.GetPath()) << "no folder";
    EXPECT_TRUE(SaveFails(m_strOld, RLIM_INFINITY, EFileFailure::NoSafetyCopy));
    EXPECT_TRUE(Content() == m_strNew) << "never without a copy";
}

TEST_F(SafetyCopy, AFileThatFindsNoRoomIsUntouched) {
    EXPECT_TRUE(SaveFails(m_strNew + "longer", (1 << 20) + 3, EFileFailure::TooBigForDisk));
    EXPECT_TRUE(Content() == m_strOld);
    EXPECT_EQ(CountFiles(m_pathRecovery), 0);
}

TEST_F(SafetyCopy, WhatBrokeOffIsOfferedUntilTheFileIsWhole) {
    for (const bool bDies : {false, true}) {
        EXPECT_EQ(SaveFails(m_strNew, 100000, EFileFailure::HalfWritten, bDies), !bDies);
        EXPECT_TRUE(Content() == m_strNew.substr(0, 100000) + m_strOld.substr(100000));
        CSnapshotStore store(m_locations);
        const auto vLeft = store.FindLeft();
        ASSERT_EQ(vLeft.size(), 1u);
        const fs::path pathCopy = m_pathRecovery / (ToUtf8(vLeft[0].strName) + ".vlm");
        EXPECT_TRUE(m_files.Read(TextOf(pathCopy)) == m_strNew);
        EXPECT_TRUE(vLeft[0].bFileCopy && vLeft[0].bHasFile);
        EXPECT_EQ(vLeft[0].note.strPath, TextOf(m_path));
        EXPECT_EQ(vLeft[0].note.strTitle, L"絵 1.vlm");
    }
    EXPECT_TRUE(SaveFails(m_strNew + "longer", 1 << 20, EFileFailure::TooBigForDisk));
    EXPECT_EQ(CountFiles(m_pathRecovery), 2) << "the file is still not whole";
    chmod(m_folder.GetPath().c_str(), 0777);
    EXPECT_TRUE(Save(m_strOld)); // by renaming now
    EXPECT_TRUE(Content() == m_strOld && CountFiles(m_pathRecovery) == 0);
}

TEST_F(SafetyCopy, AnothersFileInASharedFolderStaysTheirs) {
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can make files of others";
    chmod(m_folder.GetPath().c_str(), 01777); // files can be created, but not renamed over others'
    const ino_t uNode = Node();
    EXPECT_TRUE(Save(m_strNew));
    EXPECT_TRUE(Content() == m_strNew && Node() == uNode && CountFiles(m_folder.GetPath()) == 1);
}
