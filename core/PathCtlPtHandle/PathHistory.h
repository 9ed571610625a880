// The undoable change of a whole path.
#pragma once

#include "core/History/History.h"
#include "core/PathObject/PathObject.h"

/// A path changed from one snapshot to another; the points of both keep their identity. The caller supplies
/// the label.
class CPathHistory : public CHistory {
public:
    CPathHistory(std::wstring strLabel, const boost::shared_ptr<CPathObject>& spPath,
                 const boost::shared_ptr<TPathSnapshot>& spBefore,
                 const boost::shared_ptr<TPathSnapshot>& spAfter)
        : CHistory(std::move(strLabel)), m_spPath(spPath), m_spBefore(spBefore), m_nSnapshotBytes(0) {
        SetAfter(spAfter);
    }

    void Undo() override { m_spPath->ApplySnapshot(*m_spBefore); }
    void Redo() override { m_spPath->ApplySnapshot(*m_spAfter); }
    bool IsOf(const CPathObject& path) const { return m_spPath.get() == &path; }
    /// Takes in a further change of the path, which leads to `spAfter`.
    void SetAfter(const boost::shared_ptr<TPathSnapshot>& spAfter) {
        m_spAfter = spAfter;
        m_nSnapshotBytes = m_spBefore->chunk.GetWhole().size() + spAfter->chunk.GetWhole().size();
    }

protected:
    size_t CountBytes() const override { return m_nSnapshotBytes; }

private:
    boost::shared_ptr<CPathObject> m_spPath;
    boost::shared_ptr<TPathSnapshot> m_spBefore;
    boost::shared_ptr<TPathSnapshot> m_spAfter;
    size_t m_nSnapshotBytes;
};
