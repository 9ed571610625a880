#include "system/files/SnapshotStore.h"

#include "core/Base/Failure.h"
#include "core/Platform/Files.h"
#include "tests/support/TempFolder.h"

#include <fstream>

namespace {

namespace fs = std::filesystem;

class SnapshotStore : public testing::Test, protected ILocations {
protected:
    std::wstring GetAppData() override { return TextOf(m_folder.GetPath()); }
    void MakeFolder(const std::wstring& strPath) override { fs::create_directories(PathOf(strPath)); }
    static TFillBytes Bytes(std::string strBytes) {
        return [strBytes](const TWriteBytes& fnWrite) { return fnWrite(strBytes); };
    }
    static std::string Read(CSnapshotStore& store, const TLeftSnapshot& left) {
        const auto upReader = store.Open(left.strName);
        std::string str(upReader->GetSize(), ' ');
        EXPECT_TRUE(upReader->Read(0, reinterpret_cast<uint8_t*>(str.data()), str.size()));
        return str;
    }

    CTempFolder m_folder;
    const fs::path m_pathRecovery = m_folder.File("Vellumcraft/Recovery");
    const TSnapshotNote m_note{L"/絵 \"1\"\n100%0A.vlm", L" 題 ", {}};
};

} // namespace

TEST_F(SnapshotStore, OnlyTheSnapshotsOfDeadSessionsAreLeft) {
    {
        CSnapshotStore dead(*this);
        dead.Write(1, Bytes("old"), m_note);
        dead.Write(2, Bytes("gone"), {});
        dead.Remove(2);
        dead.Write(1, Bytes(std::string("new\0", 4)), m_note);
    }
    CSnapshotStore running(*this), starting(*this);
    running.Write(1, Bytes("mine"), {});
    EXPECT_TRUE(running.Finish(1) && !running.Finish(2));
    const auto vLeft = starting.FindLeft();
    ASSERT_EQ(vLeft.size(), 1u);
    EXPECT_EQ(Read(starting, vLeft[0]), std::string("new\0", 4));
    EXPECT_TRUE(vLeft[0].note.strPath == m_note.strPath && vLeft[0].note.strTitle == m_note.strTitle);
    EXPECT_EQ(vLeft[0].note.strTime.size(), 16u);
    EXPECT_TRUE(running.FindLeft().empty()) << "offered once at a time";
    starting.ReleaseLeft();
    EXPECT_TRUE(CSnapshotStore(*this, false).FindLeft().empty()) << "a recorded session";
    EXPECT_EQ(running.FindLeft().size(), 1u);
}

TEST_F(SnapshotStore, WhatCannotBeRestoredIsOfferedNoMore) {
    CSnapshotStore(*this).Write(1, Bytes("x"), m_note);
    CSnapshotStore store(*this);
    store.SetAside(store.FindLeft().at(0).strName);
    for (const char* psz : {"0123456789abcdef-1.ini", "0123456789abcdef-2.vlm.AbCdEf", "notes.txt"})
        std::ofstream(m_pathRecovery / psz) << "x";
    store.ReleaseLeft();
    EXPECT_TRUE(store.FindLeft().empty());
    store.ReleaseLeft();
    EXPECT_EQ(std::ranges::distance(fs::directory_iterator(m_pathRecovery)), 3);
    EXPECT_TRUE(fs::exists(m_pathRecovery / "notes.txt"));
}

TEST_F(SnapshotStore, WhatAnEarlierVersionLeftIsStillRead) {
    fs::create_directories(m_pathRecovery);
    std::ofstream(m_pathRecovery / "0123456789abcdef-7.vlm") << "VLM1 as it was";
    CSnapshotStore store(*this);
    const auto vLeft = store.FindLeft();
    ASSERT_EQ(vLeft.size(), 1u);
    EXPECT_EQ(Read(store, vLeft[0]), "VLM1 as it was");
    store.Adopt(vLeft[0].strName, 3);
    EXPECT_TRUE(store.Finish(3)) << "whole, though not of this session";
    std::ofstream(m_pathRecovery / "0123456789abcdef-8.vlm") << "VLMZ cut";
    EXPECT_THROW((void)store.Open(L"0123456789abcdef-8"), deserialize_error);
    EXPECT_EQ(store.Open(L"0123456789abcdef-9"), nullptr);
}
