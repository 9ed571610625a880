// Snapshots of unsaved documents on the disk: the folder "Recovery" beside the settings.
#pragma once

#include "core/Platform/Snapshots.h"
#include "system/FileLock.h"
#include "system/FileStore.h"
#include "system/Worker.h"

#include <atomic>
#include <filesystem>
#include <map>
#include <memory>
#include <set>

class ILocations;

/// A snapshot is two files, SESSION-KEY.vlm and SESSION-KEY.ini with its note. A session holds a lock from
/// its first snapshot on, which ends with its process: what lies under a name whose lock is free has been
/// left. Nothing is touched before the first snapshot; without a folder for application data nothing is kept.
/// Files are written by a thread of its own, in the order of the calls.
class CSnapshotStore : public ISnapshotStore, boost::noncopyable {
public:
    explicit CSnapshotStore(ILocations& locations);

    void Write(uint32_t uKey, std::string strBytes, const TSnapshotNote& note) override;
    void Remove(uint32_t uKey) override;
    bool IsBusy() override { return m_worker.IsBusy(); }
    bool TakeFailure() override { return m_bFailed.exchange(false); }

    /// Also clears away what no document can be made from: notes and unfinished writes.
    std::vector<TLeftSnapshot> FindLeft() override;
    std::optional<std::string> Read(const std::wstring& strName) override;
    void Adopt(const std::wstring& strName, uint32_t uKey) override;
    /// The files get ".damaged" behind their names.
    std::wstring SetAside(const std::wstring& strName) override;
    void Drop(const std::wstring& strName) override;
    void ReleaseLeft() override { m_vReserved.clear(); }

private:
    bool MakeFolder();
    bool BeginSession();
    std::string NameOf(uint32_t uKey) const;
    std::filesystem::path FileOf(const std::string& strName, const char* pszEnding) const;
    TLeftSnapshot Describe(const std::string& strName);

    ILocations& m_locations;
    CFileStore m_files;
    std::filesystem::path m_pathFolder; ///< empty while it is not known
    std::string m_strSession;
    std::unique_ptr<CFileLock> m_pLock; ///< this session's
    std::vector<std::unique_ptr<CFileLock>> m_vReserved;
    std::set<uint32_t> m_setKeys; ///< that may have files
    std::atomic<bool> m_bFailed = false;
    CWorker m_worker; ///< the last member: its jobs use the others
};
