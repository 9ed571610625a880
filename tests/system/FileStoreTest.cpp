#include "system/FileStore.h"

#include "core/Base/Text.h"
#include "core/IniConfig/IniConfig.h"
#include "system/FileLock.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <fstream>
#include <stdexcept>
#include <thread>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

std::wstring Wide(const fs::path& path) { return FromUtf8(path.native()); }

void WriteFile(const fs::path& path, std::string_view strBytes) {
    std::ofstream(path, std::ios::binary) << strBytes;
}

std::string Content(const fs::path& path) { return CFileStore().Read(Wide(path)).value_or("(none)"); }

ptrdiff_t CountFiles(const fs::path& path) {
    return std::distance(fs::directory_iterator(path), fs::directory_iterator());
}

// Runs `body` in a process of its own and gives its process id.
template <class Body>
pid_t Spawn(Body body) {
    const pid_t id = fork();
    if (id == 0) _exit(body() ? 0 : 1);
    return id;
}

// True when the process ended by itself and its body was true.
bool Succeeded(pid_t id) {
    int nStatus = 0;
    return waitpid(id, &nStatus, 0) == id && WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

// As a user whom rights hold back: the superuser writes everywhere.
template <class Body>
bool AsPlainUser(Body body) {
    return Succeeded(Spawn([&] { return (geteuid() != 0 || seteuid(65534) == 0) && body(); }));
}

} // namespace

TEST(FileStore, ReplacesAndReadsWholeFiles) {
    CTempFolder folder;
    CFileStore files;
    const fs::path path = folder.File("絵 1.bin");
    EXPECT_FALSE(files.Read(Wide(path)));
    std::string strBytes(300000, '\0');
    for (size_t i = 0; i < strBytes.size(); ++i) strBytes[i] = static_cast<char>(i * 7 >> 3);
    for (const std::string& str : {strBytes, std::string("short"), std::string()}) {
        EXPECT_TRUE(files.Replace(Wide(path), str));
        EXPECT_EQ(Content(path), str);
    }
    EXPECT_EQ(CountFiles(folder.GetPath()), 1) << "nothing is left beside";
}

TEST(FileStore, FollowsLinksAndKeepsRights) {
    CTempFolder folder;
    CFileStore files;
    fs::create_directory(folder.File("real"));
    WriteFile(folder.File("real/doc"), "old");
    chmod(folder.File("real/doc").c_str(), 0640);
    fs::create_symlink("real/doc", folder.File("link"));
    fs::create_symlink("link", folder.File("link2"));
    fs::create_symlink("real/later", folder.File("dangling"));
    EXPECT_TRUE(files.Replace(Wide(folder.File("link2")), "new"));
    EXPECT_TRUE(files.Update(Wide(folder.File("dangling")), [&](std::string& str) {
        EXPECT_TRUE(fs::exists(folder.File("real/.later.lock"))) << "one file, one lock, by whatever name";
        str = "made";
        return true;
    }));
    EXPECT_EQ(Content(folder.File("real/doc")), "new");
    EXPECT_EQ(Content(folder.File("real/later")), "made");
    EXPECT_EQ(fs::status(folder.File("real/doc")).permissions(), fs::perms{0640});
    for (const char* pszLink : {"link", "link2", "dangling"})
        EXPECT_TRUE(fs::is_symlink(folder.File(pszLink)));
    if (geteuid() == 0 && chown(folder.File("real/doc").c_str(), 65534, 65534) == 0) {
        EXPECT_TRUE(files.Replace(Wide(folder.File("link")), "newer"));
        struct stat status {};
        stat(folder.File("real/doc").c_str(), &status);
        EXPECT_EQ(status.st_uid, 65534u) << "the file stays its owner's";
        EXPECT_EQ(status.st_mode & 07777, 0640u);
    }
}

TEST(FileStore, TouchesPlainFilesOnly) {
    CTempFolder folder;
    CFileStore files;
    const auto edit = [](std::string& str) { return str = "x", true; };
    fs::create_directory(folder.File("sub"));
    ASSERT_EQ(mkfifo(folder.File("pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", folder.File("loop"));
    for (const char* pszName : {"sub", "pipe", "loop", "missing/file", "sub/"}) {
        const std::wstring strPath = Wide(folder.File(pszName));
        EXPECT_FALSE(files.Read(strPath)) << pszName;
        EXPECT_FALSE(files.Replace(strPath, "x")) << pszName;
        EXPECT_FALSE(files.Update(strPath, edit)) << pszName;
    }
    EXPECT_TRUE(fs::is_fifo(folder.File("pipe")));
    EXPECT_FALSE(files.Read(L"") || files.Replace(L"", "x") || files.Update(L"", edit));
}

TEST(FileStore, AFailedWriteLeavesTheOldFile) {
    CTempFolder folder;
    const fs::path path = folder.File("doc");
    WriteFile(path, "old");
    const auto writeFails = [&] { return !CFileStore().Replace(Wide(path), std::string(1 << 20, 'n')); };
    EXPECT_TRUE(Succeeded(Spawn([&] { // as on a full disk
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{65536, 65536};
        return setrlimit(RLIMIT_FSIZE, &limit) == 0 && writeFails();
    })));
    chmod(folder.GetPath().c_str(), 0755); // readable, and not writable for others
    chmod(path.c_str(), 0666);
    if (geteuid() == 0) {
        EXPECT_TRUE(AsPlainUser(writeFails));
        EXPECT_TRUE(AsPlainUser([&] {
            const auto timeStart = std::chrono::steady_clock::now();
            CIniConfigData(Wide(path), L"S", *std::make_unique<CFileStore>()).SetInt(L"k", 1);
            return std::chrono::steady_clock::now() - timeStart < std::chrono::seconds(1);
        })) << "no waiting for a lock that cannot be";
    }
    EXPECT_EQ(Content(path), "old");
    EXPECT_EQ(CountFiles(folder.GetPath()), 1);
}

TEST(FileStoreUpdate, WritesOnlyWhenTheEditSaysSo) {
    CTempFolder folder;
    CFileStore files;
    const fs::path path = folder.File("a.ini");
    EXPECT_FALSE(files.Update(Wide(path), [](std::string& str) { return str = "x", false; }));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_THROW(files.Update(Wide(path), [](std::string&) -> bool { throw std::runtime_error("edit"); }),
                 std::runtime_error);
    EXPECT_TRUE(files.Update(Wide(path), [](std::string& str) { return str += "1", true; }));
    EXPECT_TRUE(files.Update(Wide(path), [](std::string& str) { return str += "2", true; }));
    EXPECT_EQ(Content(path), "12");
    if (geteuid() == 0) {
        chmod(folder.GetPath().c_str(), 0777);
        chmod(path.c_str(), 0222);
        EXPECT_TRUE(AsPlainUser([&] {
            return !CFileStore().Update(Wide(path), [](std::string& str) { return str += "3", true; });
        })) << "a file that cannot be read is not an empty one";
        EXPECT_EQ(Content(path), "12");
    }
    EXPECT_EQ(CountFiles(folder.GetPath()), 1) << "the lock is gone too";
}

TEST(FileStoreUpdate, ConcurrentWritersLoseNothing) {
    CTempFolder folder;
    const std::wstring strPath = Wide(folder.File("a.ini"));
    constexpr int KEYS = 20;
    const auto writeKeys = [&](int nWriter) {
        CFileStore files;
        CIniConfigData section(strPath, L"Writer" + std::to_wstring(nWriter % 3), files);
        for (int i = 0; i < KEYS; ++i)
            section.SetInt(std::to_wstring(nWriter) + L"-" + std::to_wstring(i), i);
        return true;
    };
    std::vector<pid_t> vProcesses;
    for (int n = 0; n < 3; ++n) vProcesses.push_back(Spawn([&, n] { return writeKeys(n); }));
    std::vector<std::thread> vThreads;
    for (int n = 3; n < 6; ++n) vThreads.emplace_back(writeKeys, n);
    for (auto& thread : vThreads) thread.join();
    for (const pid_t id : vProcesses) EXPECT_TRUE(Succeeded(id));
    CFileStore files;
    for (int n = 0; n < 6; ++n) {
        CIniConfigData section(strPath, L"Writer" + std::to_wstring(n % 3), files);
        for (int i = 0; i < KEYS; ++i)
            EXPECT_EQ(section.GetInt(std::to_wstring(n) + L"-" + std::to_wstring(i), -1), i) << n;
    }
    EXPECT_EQ(CountFiles(folder.GetPath()), 1);
}

TEST(FileLock, IsBoundedAndOutlivedByNobody) {
    using namespace std::chrono_literals;
    CTempFolder folder;
    const std::string strPath = folder.File("a.ini").native();
    {
        CFileLock lock(strPath, 0ms);
        EXPECT_TRUE(lock.IsLocked());
        EXPECT_FALSE(CFileLock(strPath, 20ms).IsLocked()) << "exclusive inside a process";
        EXPECT_TRUE(Succeeded(Spawn([&] { return !CFileLock(strPath, 20ms).IsLocked(); })));
    }
    // A process that dies with the lock in its hand.
    EXPECT_TRUE(Succeeded(Spawn([&] { return (new CFileLock(strPath, 0ms))->IsLocked(); })));
    EXPECT_TRUE(fs::exists(folder.File(".a.ini.lock")));
    EXPECT_TRUE(CFileLock(strPath, 0ms).IsLocked());
}

TEST(FileLock, IsNeverHeldTwiceWhenManyWaitForItsRemoval) {
    CTempFolder folder;
    const std::string strPath = folder.File("a.ini").native();
    std::atomic<int> nHolders{0};
    std::atomic<int> nTogether{0};
    std::atomic<int> nMissed{0};
    std::vector<std::thread> vThreads;
    for (int n = 0; n < 6; ++n)
        vThreads.emplace_back([&] {
            for (int i = 0; i < 400; ++i) {
                const CFileLock lock(strPath, std::chrono::seconds(20));
                nMissed += !lock.IsLocked();
                nTogether += ++nHolders > 1;
                std::this_thread::yield();
                --nHolders;
            }
        });
    for (auto& thread : vThreads) thread.join();
    EXPECT_EQ(nTogether, 0);
    EXPECT_EQ(nMissed, 0);
}
