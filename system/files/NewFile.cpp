#include "system/files/NewFile.h"

#include "system/files/FileErrors.h"
#include "system/files/FilePath.h"
#include "system/files/FileRights.h"
#include "system/files/PutInPlace.h"

#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int TRIES = 100;
/// Bytes of the old name that the new name keeps, few enough for the limit of every file system.
constexpr size_t KEPT_BYTES = 40;
constexpr size_t RANDOM_LETTERS = 6;

// The start of a name, not cut inside a UTF-8 character.
std::string BeginningOf(const std::string& strName) {
    size_t n = KEPT_BYTES;
    if (strName.size() <= n) return strName;
    while (n > 0 && (static_cast<unsigned char>(strName[n]) & 0xC0) == 0x80) --n;
    return strName.substr(0, n);
}

fs::path NewNameFor(const fs::path& path) {
    static constexpr char LETTERS[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::string strName = BeginningOf(Utf8Of(path.filename())) + '.';
    for (size_t i = 0; i < RANDOM_LETTERS; ++i) strName += LETTERS[random() % (sizeof LETTERS - 1)];
    return path.parent_path() / PathOf(strName);
}

COpenFile MakeBeside(const fs::path& path, bool bPrivate, fs::path& pathNew) {
    for (int n = 0;; ++n) {
        pathNew = NewNameFor(path);
        COpenFile file(pathNew, COpenFile::EAccess::Create, bPrivate);
        if (file.IsOpen() || !IsTaken(LastFileError()) || n == TRIES) return file;
    }
}

} // namespace

CNewFile::CNewFile(const fs::path& path, bool bReplaces)
    : m_path(path), m_bReplaces(bReplaces), m_file(MakeBeside(path, bReplaces, m_pathNew)) {
    if (IsOpen()) return;
    Fail();
    m_pathNew.clear();
}

CNewFile::~CNewFile() {
    if (m_pathNew.empty()) return;
    m_file.Close();
    std::error_code error;
    fs::remove(m_pathNew, error);
}

bool CNewFile::Fail() {
    if (m_nError == 0) m_nError = LastFileError();
    return false;
}

bool CNewFile::Write(std::string_view strBytes) { return m_file.Write(strBytes) || Fail(); }

bool CNewFile::TakePlace() {
    if (m_bReplaces && !KeepRights(m_path, m_file)) return Fail();
    if (!m_file.Flush() || !PutInPlace(m_file, m_pathNew, m_path, m_bReplaces)) return Fail();
    m_pathNew.clear();
    return true;
}
