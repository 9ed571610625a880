// Where snapshots of unsaved documents are kept, so that a session that breaks off loses little.
#pragma once

#include "core/Platform/Files.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// What is known of a snapshot's document.
struct TSnapshotNote {
    std::wstring strPath;  ///< its file, empty when it has none
    std::wstring strTitle; ///< empty when the note was lost
    std::wstring strTime;  ///< when the snapshot was made, as the user reads it; the store fills it in
};

/// A snapshot of a session that is gone.
struct TLeftSnapshot {
    std::wstring strName; ///< how the store knows it
    TSnapshotNote note;
    bool bHasFile = false; ///< the document's own file is there
    /// The bytes of the file of that path, whole: writing them there broke off. A project or any other file.
    bool bFileCopy = false;
};

/// A session's snapshots are named by keys of its own choice. What it neither removes nor adopts away stays
/// when it ends. All calls come from the session's thread; none throws but for want of memory.
class ISnapshotStore {
public:
    virtual ~ISnapshotStore() = default;
    /// Begins to keep what `fnFill` hands on under a key, in place of what is there; the old one stays until
    /// the new one is whole. `fnFill` is called once, as a rule later and on another thread, and then let go.
    virtual void Write(uint32_t uKey, TFillBytes fnFill, const TSnapshotNote& note) = 0;
    /// Waits until the key's snapshot has been written; true when it is whole.
    virtual bool Finish(uint32_t uKey) = 0;
    /// Removes a key's snapshot, also one whose writing has begun.
    virtual void Remove(uint32_t uKey) = 0;
    /// True while something is being written.
    virtual bool IsBusy() = 0;
    /// True once after writing failed.
    virtual bool TakeFailure() = 0;

    /// What sessions have left that are gone, each of them reserved for this session until ReleaseLeft.
    virtual std::vector<TLeftSnapshot> FindLeft() = 0;
    /// The bytes of a reserved snapshot, null when they cannot be read. This and reading them raise
    /// deserialize_error when they are damaged.
    virtual std::unique_ptr<IFileReader> Open(const std::wstring& strName) = 0;
    /// Makes a reserved snapshot this session's own.
    virtual void Adopt(const std::wstring& strName, uint32_t uKey) = 0;
    /// Takes a reserved snapshot out of what FindLeft lists; returns where its file is now.
    virtual std::wstring SetAside(const std::wstring& strName) = 0;
    /// Deletes a reserved snapshot.
    virtual void Drop(const std::wstring& strName) = 0;
    /// Gives back what is still reserved: the next session finds it.
    virtual void ReleaseLeft() = 0;
};
