// Snapshots of unsaved documents: creation, removal and recovery.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Snapshots.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <map>
#include <string>
#include <vector>

class IClock;
struct TGlobalSwitches;

/// The bytes of the document's project file as it is now. Holds the document's tiles, not their bytes: later
/// drawing replaces a tile by its clone.
TFillBytes SerializeDocument(const CCanvasBuffer& canvas);

/// Watches the documents of a session. A changed document gets a snapshot `m_nAutoSave` seconds
/// after its first change not yet in one, when idle. The snapshot is removed when the document is saved or
/// forgotten, and remains when the document ends in any other way.
class CRecovery : boost::noncopyable {
public:
    /// All must outlive the object.
    CRecovery(ISnapshotStore& store, IClock& clock, const TGlobalSwitches& switches)
        : m_store(store), m_clock(clock), m_switches(switches) {}

    /// Idle work for one document: tracks its changes and takes a due snapshot. Propagates exceptions of
    /// Serialize; that document is then skipped until it has been saved.
    void Watch(const boost::shared_ptr<CCanvasBuffer>& spCanvas);
    /// Takes a snapshot of unsaved changes now, also when AutoSaveSeconds is 0, and waits until it is on
    /// the disk. False when it could not be written; propagates exceptions of Serialize.
    bool Keep(const boost::shared_ptr<CCanvasBuffer>& spCanvas);
    /// Called when the document is closed without keeping a snapshot.
    void Forget(const CCanvasBuffer& canvas);
    /// Returns true once after a snapshot could not be written.
    bool TakeFailure() { return m_store.TakeFailure(); }

    /// The snapshots of broken sessions, reserved for this one until ReleaseLeft.
    std::vector<TLeftSnapshot> FindLeft() { return m_store.FindLeft(); }
    /// Opens the document of a left snapshot as unsaved, with its old title and, if its file still exists,
    /// path. The snapshot then belongs to the document. Raises fileopen_error,
    /// deserialize_error or cancelled_error, after which the snapshot is left as it was.
    boost::shared_ptr<CCanvasBuffer> Restore(const TLeftSnapshot& left, IProgress& progress = NoProgress());
    /// The bytes of a left snapshot, null when they cannot be read.
    std::unique_ptr<IFileReader> Open(const TLeftSnapshot& left) { return m_store.Open(left.strName); }
    /// Sets aside a snapshot that cannot be restored; returns its new path.
    std::wstring SetAside(const TLeftSnapshot& left) { return m_store.SetAside(left.strName); }
    void Drop(const TLeftSnapshot& left) { m_store.Drop(left.strName); }
    void ReleaseLeft() { m_store.ReleaseLeft(); }

private:
    struct TEntry {
        boost::weak_ptr<CCanvasBuffer> wpCanvas;
        uint32_t uKey = 0;
        uint32_t uChanges = 0;     ///< the change count that was seen last
        uint32_t uFirstChange = 0; ///< tick of the first change that no snapshot has
        uint32_t uLastChange = 0;
        bool bPending = false; ///< that change exists
        bool bGivenUp = false;
    };

    TEntry& FindEntry(const boost::shared_ptr<CCanvasBuffer>& spCanvas);
    void NoteChanges(TEntry& entry, uint32_t uChanges);
    bool IsDue(const TEntry& entry) const;
    void Write(TEntry& entry, const CCanvasBuffer& canvas);

    ISnapshotStore& m_store;
    IClock& m_clock;
    const TGlobalSwitches& m_switches;
    std::map<const CCanvasBuffer*, TEntry> m_mapEntries;
    uint32_t m_uNextKey = 1;
};
