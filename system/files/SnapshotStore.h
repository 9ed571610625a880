// Snapshots of unsaved documents on the disk: the folder "Recovery" beside the settings.
#pragma once

#include "core/Platform/Snapshots.h"
#include "system/files/FileLock.h"
#include "system/files/FileStore.h"
#include "system/files/Worker.h"

#include <atomic>
#include <filesystem>
#include <future>
#include <map>
#include <memory>

class ILocations;

/// A snapshot is two files, SESSION-KEY.vlm, packed (PackedFile.h), and SESSION-KEY.ini with its note;
/// earlier versions wrote a plain project file. A session holds a lock from its first snapshot until its
/// process ends; files whose lock is free are left over from another session. Nothing is touched before the
/// first snapshot; nothing is kept without a folder for application data. A separate thread packs and
/// writes the files in call order.
class CSnapshotStore : public ISnapshotStore, boost::noncopyable {
public:
    /// With `bFindsLeft` false FindLeft returns nothing: a played or recorded session must not depend on
    /// other sessions.
    explicit CSnapshotStore(ILocations& locations, bool bFindsLeft = true);

    void Write(uint32_t uKey, TFillBytes fnFill, const TSnapshotNote& note) override;
    bool Finish(uint32_t uKey) override;
    void Remove(uint32_t uKey) override;
    bool IsBusy() override { return m_worker.IsBusy(); }
    bool TakeFailure() override { return m_bFailed.exchange(false); }

    /// Also removes notes without a document and unfinished writes.
    std::vector<TLeftSnapshot> FindLeft() override;
    std::unique_ptr<IFileReader> Open(const std::wstring& strName) override;
    void Adopt(const std::wstring& strName, uint32_t uKey) override;
    /// Appends ".damaged" to the names of the files.
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
    const bool m_bFindsLeft;
    CFileStore m_files;
    std::filesystem::path m_pathFolder; ///< empty until it is known
    std::string m_strSession;
    std::unique_ptr<CFileLock> m_pLock; ///< this session's
    std::vector<std::unique_ptr<CFileLock>> m_vReserved;
    std::map<uint32_t, std::shared_future<bool>> m_mapKeys; ///< may have files; true: they are complete
    std::atomic<bool> m_bFailed = false;
    CWorker m_worker; ///< the last member, because its jobs use the others
};
