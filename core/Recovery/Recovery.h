// Snapshots of unsaved documents: when they are taken, when they go, and how documents come back from them.
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

/// Watches the documents of a session. A document that differs from its file gets a snapshot
/// g_Switches.m_nAutoSave seconds after its first change that no snapshot has, in a pause of the work. The
/// snapshot goes when the document is saved or forgotten; a document that ends in any other way leaves it.
class CRecovery : boost::noncopyable {
public:
    /// Both outlive the object.
    CRecovery(ISnapshotStore& store, IClock& clock) : m_store(store), m_clock(clock) {}

    /// Idle work for one document: follows its changes, takes a snapshot that is due. Raises what Serialize
    /// raises; that document is then left alone until it has been saved.
    void Watch(const boost::shared_ptr<CCanvasBuffer>& spCanvas);
    /// Takes a snapshot now of what none has yet, also when AutoSaveSeconds is 0, and waits until it is on
    /// the disk. False when it cannot be there; raises what Serialize raises.
    bool Keep(const boost::shared_ptr<CCanvasBuffer>& spCanvas);
    /// The document is closed and nothing of it is to be kept.
    void Forget(const CCanvasBuffer& canvas);
    /// True once after a snapshot could not be written.
    bool TakeFailure() { return m_store.TakeFailure(); }

    /// What broken sessions left, reserved for this one until ReleaseLeft.
    std::vector<TLeftSnapshot> FindLeft() { return m_store.FindLeft(); }
    /// The document of a left snapshot, unsaved, with its old title and, if its file is still there, path.
    /// The snapshot is the document's own from now on. Raises fileopen_error or deserialize_error.
    boost::shared_ptr<CCanvasBuffer> Restore(const TLeftSnapshot& left);
    /// The bytes of a left snapshot, null when they cannot be read.
    std::unique_ptr<IFileReader> Open(const TLeftSnapshot& left) { return m_store.Open(left.strName); }
    /// Puts one that cannot be restored out of the way; returns where it is.
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
        bool bPending = false; ///< there is such a change
        bool bGivenUp = false;
    };

    TEntry& FindEntry(const boost::shared_ptr<CCanvasBuffer>& spCanvas);
    void NoteChanges(TEntry& entry, uint32_t uChanges);
    bool IsDue(const TEntry& entry) const;
    void Write(TEntry& entry, const CCanvasBuffer& canvas);

    ISnapshotStore& m_store;
    IClock& m_clock;
    std::map<const CCanvasBuffer*, TEntry> m_mapEntries;
    uint32_t m_uNextKey = 1;
};
