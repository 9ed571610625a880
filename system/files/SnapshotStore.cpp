#include "system/files/SnapshotStore.h"

#include "core/Base/Text.h"
#include "core/IniConfig/IniText.h"
#include "system/files/FilePath.h"
#include "system/files/PackedFile.h"
#include "system/files/SnapshotFiles.h"

#include <algorithm>
#include <random>
#include <set>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using namespace SnapshotFiles;

constexpr char DAMAGED[] = ".damaged";

std::string NewSessionName() {
    std::random_device random;
    return SessionName(uint64_t{random()} << 32 | random());
}

// The name of the session that a file of the folder, or a lock, belongs to; empty for other files.
std::string SessionOf(std::string_view strFile) {
    if (strFile.starts_with('.')) strFile.remove_prefix(1);
    const std::string_view strName = strFile.substr(0, SESSION_DIGITS);
    const bool bName = strName.size() == SESSION_DIGITS &&
                       strName.find_first_not_of("0123456789abcdef") == std::string_view::npos;
    const std::string_view strRest = bName ? strFile.substr(SESSION_DIGITS) : "";
    return strRest.starts_with('-') || strRest == ".lock" ? std::string(strName) : std::string();
}

std::wstring Unescaped(std::string strText) {
    for (size_t n = strText.find('%'); n != std::string::npos; n = strText.find('%', n + 1)) {
        const std::string strCode = strText.substr(n + 1, 2);
        const char ch = strCode == "0A" ? '\n' : strCode == "0D" ? '\r' : '%';
        strText.replace(n, 1 + strCode.size(), 1, ch);
    }
    return FromUtf8(strText);
}

void Rename(const fs::path& pathOld, const fs::path& pathNew) {
    std::error_code error;
    fs::rename(pathOld, pathNew, error);
}

std::vector<std::string> ListFolder(const fs::path& path) {
    std::vector<std::string> vNames;
    std::error_code error;
    for (fs::directory_iterator it(path, error), itEnd; !error && it != itEnd; it.increment(error))
        vNames.push_back(Utf8Of(it->path().filename()));
    std::ranges::sort(vNames);
    return vNames;
}

} // namespace

CSnapshotStore::CSnapshotStore(ILocations& locations, bool bFindsLeft)
    : m_locations(locations), m_bFindsLeft(bFindsLeft) {}

bool CSnapshotStore::MakeFolder() {
    if (m_pathFolder.empty()) m_pathFolder = MakeRecoveryFolder(m_locations);
    return !m_pathFolder.empty();
}

bool CSnapshotStore::BeginSession() {
    if (!MakeFolder()) return false;
    if (m_pLock) return true;
    m_strSession = NewSessionName();
    m_pLock = std::make_unique<CFileLock>(m_pathFolder / m_strSession, 0ms);
    // Without the lock other programs would take the snapshots for left ones.
    if (!m_pLock->IsLocked()) m_pLock.reset();
    if (!m_pLock) m_bFailed = true;
    return m_pLock != nullptr;
}

std::string CSnapshotStore::NameOf(uint32_t uKey) const { return m_strSession + '-' + std::to_string(uKey); }

fs::path CSnapshotStore::FileOf(const std::string& strName, const char* pszEnding) const {
    return m_pathFolder / (strName + pszEnding);
}

void CSnapshotStore::Write(uint32_t uKey, TFillBytes fnFill, const TSnapshotNote& note) {
    if (!BeginSession()) return;
    std::shared_future<bool>& whole = m_mapKeys[uKey];
    const std::string strName = NameOf(uKey);
    const auto spDone = std::make_shared<std::promise<bool>>();
    std::shared_future<bool> done = spDone->get_future().share();
    m_worker.Add([this, spDone, pathDocument = FileOf(strName, DOCUMENT), pathNote = FileOf(strName, NOTE),
                  fnFill = std::move(fnFill), strNote = NoteText(note)] {
        bool bWhole = false;
        try {
            const auto pack = [&](const TWriteBytes& fnWrite) { return WritePacked(fnFill, fnWrite); };
            bWhole =
                m_files.Replace(TextOf(pathNote), strNote) && m_files.ReplaceBy(TextOf(pathDocument), pack);
        } catch (const std::exception&) {
            // Only the session's thread can show an error; it queries failures later.
        }
        if (!bWhole) m_bFailed = true;
        spDone->set_value(bWhole);
    });
    whole = std::move(done);
}

bool CSnapshotStore::Finish(uint32_t uKey) {
    const auto it = m_mapKeys.find(uKey);
    return it != m_mapKeys.end() && it->second.valid() && it->second.get();
}

void CSnapshotStore::Remove(uint32_t uKey) {
    if (m_mapKeys.erase(uKey) == 0) return;
    m_worker.Add([pathDocument = FileOf(NameOf(uKey), DOCUMENT), pathNote = FileOf(NameOf(uKey), NOTE)] {
        Delete(pathDocument);
        Delete(pathNote);
    });
}

TLeftSnapshot CSnapshotStore::Describe(const std::string& strName) {
    const std::string strNote = m_files.Read(TextOf(FileOf(strName, NOTE))).value_or(std::string());
    const auto read = [&](const char* pszKey) {
        return Unescaped(FindIniValue(strNote, SECTION, pszKey).value_or(std::string()));
    };
    TLeftSnapshot left{FromUtf8(strName), {read("Path"), read("Title"), read("Time")}};
    std::error_code error;
    left.bHasFile = fs::is_regular_file(PathOf(left.note.strPath), error);
    left.bFileCopy = !read("Copy").empty();
    return left;
}

std::vector<TLeftSnapshot> CSnapshotStore::FindLeft() {
    std::vector<TLeftSnapshot> vLeft;
    if (!m_bFindsLeft || !MakeFolder()) return vLeft;
    const std::vector<std::string> vFiles = ListFolder(m_pathFolder);
    std::set<std::string> setSessions;
    for (const std::string& strFile : vFiles) setSessions.insert(SessionOf(strFile));
    setSessions.erase("");
    for (const std::string& strSession : setSessions) {
        auto pLock = std::make_unique<CFileLock>(m_pathFolder / strSession, 0ms);
        if (!pLock->IsLocked()) continue;
        m_vReserved.push_back(std::move(pLock));
        // The folder is listed again: another program may have taken some before the lock was held.
        for (const std::string& strFile : ListFolder(m_pathFolder)) {
            if (!strFile.starts_with(strSession + '-') || strFile.ends_with(DAMAGED)) continue;
            const fs::path pathFile = strFile;
            if (pathFile.extension() == DOCUMENT)
                vLeft.push_back(Describe(Utf8Of(pathFile.stem())));
            else if (pathFile.extension() != NOTE || !fs::exists(FileOf(Utf8Of(pathFile.stem()), DOCUMENT)))
                Delete(m_pathFolder / pathFile);
        }
    }
    return vLeft;
}

std::unique_ptr<IFileReader> CSnapshotStore::Open(const std::wstring& strName) {
    return OpenPacked(m_files.Open(TextOf(FileOf(ToUtf8(strName), DOCUMENT))));
}

void CSnapshotStore::Adopt(const std::wstring& strName, uint32_t uKey) {
    if (!BeginSession()) return;
    std::promise<bool> whole;
    whole.set_value(true);
    m_mapKeys[uKey] = whole.get_future().share();
    // The note is removed first: a document without one can still be restored.
    for (const char* pszEnding : {NOTE, DOCUMENT})
        Rename(FileOf(ToUtf8(strName), pszEnding), FileOf(NameOf(uKey), pszEnding));
}

std::wstring CSnapshotStore::SetAside(const std::wstring& strName) {
    for (const char* pszEnding : {NOTE, DOCUMENT}) {
        const fs::path path = FileOf(ToUtf8(strName), pszEnding);
        Rename(path, fs::path(path) += DAMAGED);
    }
    return TextOf(FileOf(ToUtf8(strName), DOCUMENT) += DAMAGED);
}

void CSnapshotStore::Drop(const std::wstring& strName) {
    for (const char* pszEnding : {DOCUMENT, NOTE}) Delete(FileOf(ToUtf8(strName), pszEnding));
}
