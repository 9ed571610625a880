// Storage of snapshots of unsaved documents, for recovery after a session that ended abnormally.
#pragma once

#include "core/Platform/Files.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Information about a snapshot's document.
struct TSnapshotNote {
    std::wstring strPath;  ///< its file, empty when it has none
    std::wstring strTitle; ///< empty when the note is missing
    std::wstring strTime;  ///< time of the snapshot, formatted for the user; set by the store

    /// The title as the user sees it.
    std::wstring GetShownTitle() const { return strTitle.empty() ? L"名称未設定" : strTitle; }
};

/// A snapshot left by an ended session.
struct TLeftSnapshot {
    std::wstring strName; ///< the store's name for it
    TSnapshotNote note;
    bool bHasFile = false; ///< the document's own file exists
    /// The snapshot is a complete copy of the file at that path, whose writing in place was interrupted. It
    /// may be a project or any other file.
    bool bFileCopy = false;
};

/// The session chooses the keys of its snapshots. Snapshots that are neither removed nor replaced by Adopt
/// remain when it ends. Only the session's thread may call; nothing but bad_alloc is thrown.
class ISnapshotStore {
public:
    virtual ~ISnapshotStore() = default;
    /// Starts writing the output of `fnFill` under a key; the old snapshot remains until the new one is
    /// complete. `fnFill` is called once, usually later and on another thread, and then released.
    virtual void Write(uint32_t uKey, TFillBytes fnFill, const TSnapshotNote& note) = 0;
    /// Waits until the key's snapshot has been written; true when it is complete.
    virtual bool Finish(uint32_t uKey) = 0;
    /// Removes a key's snapshot, also one that is being written.
    virtual void Remove(uint32_t uKey) = 0;
    /// True while a snapshot is being written.
    virtual bool IsBusy() = 0;
    /// Returns true once after a write failed.
    virtual bool TakeFailure() = 0;

    /// The snapshots of ended sessions; each is reserved for this session until ReleaseLeft.
    virtual std::vector<TLeftSnapshot> FindLeft() = 0;
    /// Opens a reserved snapshot; null when it cannot be read. Opening and reading raise deserialize_error
    /// for damaged bytes.
    virtual std::unique_ptr<IFileReader> Open(const std::wstring& strName) = 0;
    /// Transfers a reserved snapshot to this session.
    virtual void Adopt(const std::wstring& strName, uint32_t uKey) = 0;
    /// Removes a reserved snapshot from the list of FindLeft; returns the new path of its file.
    virtual std::wstring SetAside(const std::wstring& strName) = 0;
    /// Deletes a reserved snapshot.
    virtual void Drop(const std::wstring& strName) = 0;
    /// Ends all reservations, so that the next session finds the snapshots.
    virtual void ReleaseLeft() = 0;
};
