// Drags of anchors that were just made.
#pragma once

#include "core/PathCtlPtHandle/VectorHandle.h"

/// Pulls the handles out of an anchor of a path that is being drawn: fore under the pointer, back opposite;
/// with Alt fore alone. Registers nothing: the whole path is one action.
class CAnchorHandleDrag : public CVectorHandleImpl<CPathObject> {
public:
    CAnchorHandleDrag(const boost::shared_ptr<CPathObject>& spPath,
                      const boost::shared_ptr<CPathControlPoint>& spPoint)
        : CVectorHandleImpl(spPath, {}), m_spPoint(spPoint) {}

    void OnDrag(CPoint delta, unsigned flags) override;
    void OnCommit() override { m_spObject->CommitDrag(); }
    TPathHit GetPart() const override { return {HIT_FORE, m_spPoint}; }

private:
    boost::shared_ptr<CPathControlPoint> m_spPoint;
};

/// Moves an anchor that a press has inserted into a path; inserting and moving are one action.
class CAnchorInstallDrag : public CVectorHandleImpl<CPathObject> {
public:
    /// `spBefore` is the path before the anchor was inserted.
    CAnchorInstallDrag(const boost::shared_ptr<CPathObject>& spPath,
                       const boost::shared_ptr<CPathControlPoint>& spPoint,
                       const boost::shared_ptr<TPathSnapshot>& spBefore, const TRegisterHistory& fnRegister)
        : CVectorHandleImpl(spPath, fnRegister), m_spPoint(spPoint), m_spBefore(spBefore) {}

    void OnDrag(CPoint delta, unsigned flags) override;
    void OnCommit() override;
    void OnCancel() override { m_spObject->ApplySnapshot(*m_spBefore); }
    TPathHit GetPart() const override { return {HIT_ANCHOR, m_spPoint}; }

private:
    boost::shared_ptr<CPathControlPoint> m_spPoint;
    boost::shared_ptr<TPathSnapshot> m_spBefore;
};
