#include "system/SnapshotStore.h"

#include "core/Base/Text.h"
#include "core/Platform/Files.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

class SnapshotStore : public testing::Test, protected ILocations {
protected:
    std::wstring GetAppData() override { return FromUtf8(m_folder.GetPath().native()); }
    void MakeFolder(const std::wstring& strPath) override { fs::create_directories(ToUtf8(strPath)); }
    static void WaitFor(CSnapshotStore& store) {
        while (store.IsBusy()) std::this_thread::yield();
    }

    CTempFolder m_folder;
    const fs::path m_pathRecovery = m_folder.File("Vellumcraft/Recovery");
    const TSnapshotNote m_note{L"/絵 \"1\"\n100%0A.vlm", L" 題 ", {}};
};

} // namespace

TEST_F(SnapshotStore, OnlyTheSnapshotsOfDeadSessionsAreLeft) {
    {
        CSnapshotStore dead(*this);
        dead.Write(1, "old", m_note);
        dead.Write(2, "gone", {});
        dead.Remove(2);
        dead.Write(1, std::string("new\0", 4), m_note);
    }
    CSnapshotStore running(*this), starting(*this);
    running.Write(1, "mine", {});
    WaitFor(running);
    const auto vLeft = starting.FindLeft();
    ASSERT_EQ(vLeft.size(), 1u);
    EXPECT_EQ(starting.Read(vLeft[0].strName), std::string("new\0", 4));
    EXPECT_TRUE(vLeft[0].note.strPath == m_note.strPath && vLeft[0].note.strTitle == m_note.strTitle);
    EXPECT_EQ(vLeft[0].note.strTime.size(), 16u);
    EXPECT_TRUE(running.FindLeft().empty()) << "offered once at a time";
    starting.ReleaseLeft();
    EXPECT_EQ(running.FindLeft().size(), 1u);
    struct stat status {};
    EXPECT_TRUE(stat(m_pathRecovery.c_str(), &status) == 0 && (status.st_mode & 0777) == 0700);
    fs::remove_all(m_pathRecovery);
    running.Write(1, "nowhere", {});
    WaitFor(running);
    EXPECT_TRUE(running.TakeFailure() && !running.TakeFailure() && !starting.TakeFailure());
}

TEST_F(SnapshotStore, WhatCannotBeRestoredIsOfferedNoMore) {
    CSnapshotStore(*this).Write(1, "x", m_note);
    CSnapshotStore store(*this);
    store.SetAside(store.FindLeft().at(0).strName);
    // A note without a document, a write that was cut off, the user's own.
    for (const char* psz : {"0123456789abcdef-1.ini", "0123456789abcdef-2.vlm.AbCdEf", "notes.txt"})
        std::ofstream(m_pathRecovery / psz) << "x";
    store.ReleaseLeft();
    EXPECT_TRUE(store.FindLeft().empty());
    store.ReleaseLeft();
    EXPECT_EQ(std::ranges::distance(fs::directory_iterator(m_pathRecovery)), 3);
    EXPECT_TRUE(fs::exists(m_pathRecovery / "notes.txt"));
}
