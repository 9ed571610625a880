#include "system/files/FileErrors.h"
#include "system/files/FileLock.h"
#include "tests/support/posix/InProcess.h"
#include "tests/system/files/FileStoreFixture.h"

#include <cerrno>
#include <random>
#include <set>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

} // namespace

TEST_F(FileStore, LeavesPipesAndLoopsAlone) {
    ASSERT_EQ(mkfifo(m_folder.File("pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", m_folder.File("loop"));
    for (const char* psz : {"pipe", "loop"}) {
        EXPECT_FALSE(m_files.Read(Path(psz)) || m_files.Replace(Path(psz), "x")) << psz;
        EXPECT_FALSE(m_files.Update(Path(psz), [](std::string& str) { return str = "x", true; })) << psz;
    }
    EXPECT_TRUE(fs::is_fifo(m_folder.File("pipe")));
}

TEST_F(FileStore, FollowsLinksAndKeepsRights) {
    const fs::path pathDoc = m_folder.File("real/doc");
    fs::create_directory(m_folder.File("real"));
    m_files.Replace(Path("real/doc"), "old");
    chmod(pathDoc.c_str(), 0640);
    const uid_t uOwner = chown(pathDoc.c_str(), 65534, 65534) == 0 ? 65534u : geteuid(); // if permitted
    fs::create_symlink("real/doc", m_folder.File("link"));
    fs::create_symlink("link", m_folder.File("link2"));
    fs::create_symlink("real/later", m_folder.File("dangling"));
    EXPECT_TRUE(m_files.Replace(Path("link2"), "new"));
    EXPECT_TRUE(m_files.Update(Path("dangling"), [&](std::string& str) {
        EXPECT_TRUE(fs::exists(m_folder.File("real/.later.lock"))) << "one file, one lock, by whatever name";
        return str = "made", true;
    }));
    EXPECT_TRUE(Content("real/doc") == "new" && Content("real/later") == "made");
    for (const char* psz : {"link", "link2", "dangling"}) EXPECT_TRUE(fs::is_symlink(m_folder.File(psz)));
    struct stat status {};
    EXPECT_TRUE(stat(pathDoc.c_str(), &status) == 0 && status.st_uid == uOwner);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(FileStore, SaysWhyRightsAndTheDiskForbidIt) {
    const auto read = [&](const char* psz) { return m_files.Read(Path(psz)).failure; };
    const auto write = [&](const char* psz) { return m_files.Replace(Path(psz), "x").GetFailure(); };
    m_files.Replace(Path("doc"), "old");
    EXPECT_EQ(WriteFailure(ENOSPC), EFileFailure::DiskFull);
    EXPECT_EQ(WriteFailure(EROFS), EFileFailure::ReadOnlyDisk);
    EXPECT_EQ(WriteFailure(EIO), EFileFailure::DiskError);
    chmod(m_folder.File("doc").c_str(), 0);
    chmod(m_folder.GetPath().c_str(), 0555);
    EXPECT_TRUE(AsPlainUser(0, [&] {
        return read("doc") == EFileFailure::NoReadRight && write("doc") == EFileFailure::NoWriteRight &&
               write("new") == EFileFailure::FolderClosed;
    }));
    chmod(m_folder.GetPath().c_str(), 0755);
    EXPECT_TRUE(OnFullDisk(65536, [&] {
        return m_files.Replace(Path("big"), std::string(1 << 20, 'n')).GetFailure() ==
               EFileFailure::TooBigForDisk;
    }));
}

TEST_F(FileStore, AFullDiskOrAMissingRightLeavesTheOldFile) {
    const auto replaceFails = [&] { return !m_files.Replace(Path("doc"), std::string(1 << 20, 'n')); };
    const auto updateFails = [&] {
        return !m_files.Update(Path("doc"), [&](std::string& str) { return str = "new", true; });
    };
    m_files.Replace(Path("doc"), "old");
    EXPECT_TRUE(OnFullDisk(65536, replaceFails));
    // A file that cannot be read does not count as empty; a lock that cannot be created is not waited for.
    for (const bool bReadable : {false, true}) {
        chmod(m_folder.GetPath().c_str(), bReadable ? 0555 : 0777);
        chmod(m_folder.File("doc").c_str(), bReadable ? 0666 : 0222);
        EXPECT_TRUE(AsPlainUser(0, [&] {
            const auto timeEnd = std::chrono::steady_clock::now() + 1s;
            return updateFails() && (!bReadable || replaceFails()) &&
                   std::chrono::steady_clock::now() < timeEnd;
        })) << bReadable;
    }
    chmod(m_folder.GetPath().c_str(), 0755);
    EXPECT_TRUE(Content("doc") == "old" && CountFiles() == 1);
}

TEST_F(FileStore, AKilledWriterLeavesOneWholeFile) {
    const std::string astrHalves[] = {std::string(20000, 'a'), std::string(2000000, 'b')};
    const auto write = [&](size_t n) {
        return m_files.ReplaceBy(Path("doc"), [&](const TWriteBytes& fnWrite) {
            return fnWrite(astrHalves[n]) && fnWrite(astrHalves[n]);
        });
    };
    write(0);
    std::set<std::string> setSeen;
    std::mt19937 random(7);
    // On a busy machine it takes longer until a kill happens after a rename.
    for (unsigned nKill = 0; nKill < 50 || (setSeen.size() < 2 && nKill < 200); ++nKill) {
        const pid_t id = fork();
        if (id == 0)
            for (size_t n = 1;; n = 1 - n) write(n);
        usleep(1000 + random() % (40000 + 4000 * nKill));
        kill(id, SIGKILL);
        waitpid(id, nullptr, 0);
        setSeen.insert(Content("doc"));
    }
    // Kills also happened between the renames.
    EXPECT_TRUE((setSeen == std::set{astrHalves[0] + astrHalves[0], astrHalves[1] + astrHalves[1]}));
}

TEST_F(FileStore, LocksAreOutlivedByNobody) {
    const fs::path path = m_folder.File("a.ini");
    const auto canLock = [&] { return CFileLock(path, 20ms).IsLocked(); };
    {
        const CFileLock lock(path, 0ms);
        EXPECT_TRUE(lock.IsLocked() && !InProcess(canLock));
    }
    EXPECT_TRUE(InProcess([&] { return (new CFileLock(path, 0ms))->IsLocked(); }) && canLock());
}
