#include "system/files/FileLock.h"
#include "tests/system/files/FileStoreFixture.h"

#include <atomic>
#include <thread>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

} // namespace

TEST_F(FileStore, WritesAndReadsPlainFilesWhole) {
    for (const std::string& str : {std::string(300000, '\0') + "end", std::string("short"), std::string()}) {
        EXPECT_TRUE(m_files.Replace(Path("絵 1.bin"), str));
        EXPECT_EQ(Content("絵 1.bin"), str);
    }
    EXPECT_EQ(CountFiles(), 1) << "nothing is left beside";
    fs::create_directory(m_folder.File("sub"));
    for (const char* psz : {"sub", "missing/file", "sub/"}) {
        EXPECT_FALSE(m_files.Read(Path(psz)) || m_files.Replace(Path(psz), "x")) << psz;
        EXPECT_FALSE(m_files.Update(Path(psz), [](std::string& str) { return str = "x", true; })) << psz;
    }
}

TEST_F(FileStore, ReadsAndWritesInPieces) {
    const auto writeTwo = [](bool bAll) {
        return [bAll](const TWriteBytes& fnWrite) { return fnWrite("01234") && fnWrite("56789") && bAll; };
    };
    EXPECT_TRUE(m_files.ReplaceBy(Path("doc"), writeTwo(true)));
    const auto upReader = m_files.Open(Path("doc"));
    ASSERT_TRUE(upReader && upReader->GetSize() == 10);
    EXPECT_FALSE(m_files.ReplaceBy(Path("doc"), writeTwo(false))) << "given up half-way";
    EXPECT_THROW(m_files.ReplaceBy(Path("doc"), [](const auto&) -> bool { throw std::bad_alloc(); }),
                 std::bad_alloc);
    EXPECT_TRUE(Content("doc") == "0123456789" && CountFiles() == 1 && m_files.Replace(Path("doc"), "new"));
    std::string str(4, ' ');
    const auto read = [&](uint64_t u) {
        return upReader->Read(u, reinterpret_cast<uint8_t*>(str.data()), 4);
    };
    EXPECT_TRUE(read(6) && str == "6789") << "the file that was opened, not the one that replaced it";
    EXPECT_FALSE(read(7)) << "beyond the end";
    for (const char* psz : {"", "missing", "doc/below"}) EXPECT_FALSE(m_files.Open(Path(psz))) << psz;
}

TEST_F(FileStore, SaysWhyAFileCannotBeUsed) {
    const auto read = [&](const char* psz) { return m_files.Read(Path(psz)).failure; };
    const auto open = [&](const char* psz) { return m_files.Open(Path(psz)).failure; };
    const auto write = [&](const char* psz) { return m_files.Replace(Path(psz), "x").GetFailure(); };
    fs::create_directory(m_folder.File("sub"));
    m_files.Replace(Path("doc"), "old");
    const std::string strLong(256, 'n');
    for (const auto& fn : {std::function(read), std::function(open)}) {
        EXPECT_EQ(fn("none"), EFileFailure::Missing);
        EXPECT_EQ(fn("doc/below"), EFileFailure::Missing);
        EXPECT_EQ(fn("sub"), EFileFailure::NotPlain);
        EXPECT_EQ(fn(strLong.c_str()), EFileFailure::NameTooLong);
    }
    EXPECT_EQ(write("none/file"), EFileFailure::NoFolder);
    EXPECT_EQ(write("sub"), EFileFailure::NotPlain);
    EXPECT_EQ(write(strLong.c_str()), EFileFailure::NameTooLong);
}

TEST_F(FileStore, TheLongestNamesCanBeSavedOverAndOver) {
    std::string strName;
    while (strName.size() < 255) strName += "絵"; // three bytes
    for (const char* psz : {"one", "two", "three"}) {
        EXPECT_TRUE(m_files.Replace(Path(strName.c_str()), psz));
        EXPECT_EQ(Content(strName.c_str()), psz);
    }
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(FileStore, AFailedWriteLeavesTheOldFile) {
    const auto updateFails = [&](bool bWrite) {
        return !m_files.Update(Path("doc"), [&](std::string& str) { return str = "new", bWrite; });
    };
    EXPECT_TRUE(updateFails(false) && CountFiles() == 0);
    m_files.Replace(Path("doc"), "old");
    EXPECT_TRUE(updateFails(false));
    EXPECT_THROW(m_files.Update(Path("doc"), [](auto&) -> bool { throw std::bad_alloc(); }), std::bad_alloc);
    EXPECT_TRUE(Content("doc") == "old" && CountFiles() == 1);
}

TEST_F(FileStore, LocksAreBounded) {
    const std::filesystem::path path = m_folder.File("a.ini");
    const auto canLock = [&] { return CFileLock(path, 20ms).IsLocked(); };
    {
        CFileLock lock(path, 0ms);
        EXPECT_TRUE(lock.IsLocked() && !canLock());
    }
    EXPECT_TRUE(canLock());
}

TEST_F(FileStore, ConcurrentWritersLoseNothingAndNeverMeet) {
    const auto runThreads = [](int nRounds, const auto& fn) {
        std::vector<std::thread> vThreads(6);
        for (auto& thread : vThreads)
            thread = std::thread([&] {
                for (int i = 0; i < nRounds; ++i) fn();
            });
        for (auto& thread : vThreads) thread.join();
    };
    runThreads(10, [&] { CFileStore().Update(Path("a.ini"), [](auto& str) { return str += "x", true; }); });
    EXPECT_EQ(Content("a.ini"), std::string(6 * 10, 'x'));
    std::atomic<int> nHolders{0};
    runThreads(400, [&] { // many waiters see the lock file removed and created again
        const CFileLock lock(m_folder.File("a.ini"), 20s);
        EXPECT_TRUE(lock.IsLocked() && ++nHolders == 1);
        std::this_thread::yield();
        --nHolders;
    });
    EXPECT_EQ(CountFiles(), 1);
}
