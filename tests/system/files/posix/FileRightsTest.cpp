#include "tests/support/TempFolder.h"
#include "tests/support/posix/InProcess.h"

#include <sys/stat.h>
#include <sys/xattr.h>

namespace {

constexpr uid_t THEIR_USER = 1;
constexpr gid_t COMMON_GROUP = 4711, FOREIGN_GROUP = 4712;
constexpr char ACCESS[] = "system.posix_acl_access", DEFAULT[] = "system.posix_acl_default";

// An access list in the system's form: the two owners, one further user and group, the mask, the others.
std::string ListOf(int nOwningGroup, int nOthers) {
    const int anEntries[][3] = {{1, 6, -1}, {2, 6, 77},  {4, nOwningGroup, -1},
                                {8, 4, 88}, {16, 6, -1}, {32, nOthers, -1}};
    std::string str("\2\0\0\0", 4);
    for (const auto& [nTag, nRights, nId] : anEntries) {
        str += {char(nTag), 0, char(nRights), 0};
        for (int i = 0; i < 4; ++i) str += static_cast<char>(nId >> 8 * i);
    }
    return str;
}

class FileRights : public testing::Test {
protected:
    FileRights() { chmod(m_folder.GetPath().c_str(), 0777); }

    bool Save() { return !!CFileStore().Replace(TextOf(m_path), "new"); }
    void Make(gid_t uGroup, mode_t mode) {
        ASSERT_TRUE(Save());
        ASSERT_EQ(chown(m_path.c_str(), THEIR_USER, uGroup), 0);
        ASSERT_EQ(chmod(m_path.c_str(), mode), 0);
    }
    struct stat Status() {
        struct stat status {};
        EXPECT_EQ(stat(m_path.c_str(), &status), 0);
        return status;
    }
    mode_t Mode() { return Status().st_mode & 07777; }
    bool Set(const char* pszName, const std::string& str, const std::filesystem::path& path) {
        return setxattr(path.c_str(), pszName, str.data(), str.size(), 0) == 0;
    }
    std::optional<std::string> Get(const char* pszName) {
        char ach[256];
        const ssize_t n = getxattr(m_path.c_str(), pszName, ach, sizeof ach);
        return n < 0 ? std::nullopt : std::optional(std::string(ach, static_cast<size_t>(n)));
    }

    CTempFolder m_folder;
    const std::filesystem::path m_path = m_folder.File("doc");
};

} // namespace

#define NEEDS_SUPERUSER()                                                                                    \
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can make files of others"

TEST_F(FileRights, TheGroupStaysOrItsRightsGo) {
    NEEDS_SUPERUSER();
    const auto save = [&] { return Save(); };
    Make(COMMON_GROUP, 02664);
    EXPECT_TRUE(AsPlainUser(COMMON_GROUP, save));
    EXPECT_TRUE(Status().st_uid == PLAIN_USER && Status().st_gid == COMMON_GROUP) << "the group alone";
    EXPECT_EQ(Mode(), 02664u);
    Make(FOREIGN_GROUP, 06676);
    EXPECT_TRUE(AsPlainUser(COMMON_GROUP, save));
    EXPECT_TRUE(Status().st_uid == PLAIN_USER && Status().st_gid == PLAIN_GROUP);
    EXPECT_EQ(Mode(), 0606u);
    Make(FOREIGN_GROUP, 0640);
    EXPECT_TRUE(Save());
    EXPECT_TRUE(Status().st_uid == THEIR_USER && Status().st_gid == FOREIGN_GROUP && Mode() == 0640);
}

TEST_F(FileRights, AccessListsStay) {
    NEEDS_SUPERUSER();
    Make(FOREIGN_GROUP, 0666);
    if (!Set(ACCESS, ListOf(6, 6), m_path)) GTEST_SKIP() << "this file system has no access lists";
    EXPECT_TRUE(Save());
    EXPECT_TRUE(Get(ACCESS) == ListOf(6, 6) && Mode() == 0666);
    EXPECT_TRUE(AsPlainUser(COMMON_GROUP, [&] { return Save(); }));
    EXPECT_EQ(Status().st_gid, PLAIN_GROUP);
    EXPECT_EQ(Get(ACCESS), ListOf(0, 6))
        << "the wrong group gets nothing, the others of the list keep theirs";
    // A folder's list applies to new files, not to files without one.
    ASSERT_TRUE(removexattr(m_path.c_str(), ACCESS) == 0 && chmod(m_path.c_str(), 0640) == 0 &&
                Set(DEFAULT, ListOf(6, 0), m_folder.GetPath()));
    EXPECT_TRUE(Save());
    EXPECT_TRUE(!Get(ACCESS) && Mode() == 0640);
    std::filesystem::remove(m_path);
    EXPECT_TRUE(Save() && Get(ACCESS)) << "a new file";
}

TEST_F(FileRights, AttributesStay) {
    const std::string strValue("絵\0 1", 6);
    ASSERT_TRUE(Save());
    if (!Set("user.comment", strValue, m_path)) GTEST_SKIP() << "this file system has no attributes";
    Set("user.second", "", m_path);
    EXPECT_TRUE(Save());
    EXPECT_TRUE(Get("user.comment") == strValue && Get("user.second") == "");
}
