// Drags along a stretch of a path, which change its width points, cuts or opacity marks.
#pragma once

#include "core/Bezier/BezierRun.h"
#include "core/PathWidthTool/PathMarks.h"
#include "core/PathWidthTool/PathWidthItem.h"

/// The press that starts such a drag.
struct TRangePress {
    boost::shared_ptr<COpenPathObject> spPath;
    CPoint pt;                   ///< the pointer, near the path
    int nCoef = 10;              ///< of the operation, in tenths
    uint32_t uDeadZone = 1;      ///< a stretch shorter than this, in path units, is one spot
    TRegisterHistory fnRegister; ///< takes the action
};

/// Keeps the parameters of the press and of the pointer. The committed line does not move during the drag.
class CPathRangeDrag : public CVectorHandleImpl<COpenPathObject> {
public:
    explicit CPathRangeDrag(const TRangePress& press);

    /// Called once, before the first movement. A shape that is refused leaves the path as it was.
    void Begin();
    void OnDrag(CPoint delta, unsigned flags) final;
    void OnCommit() final { OnEnd(); }
    TPathHit GetPart() const final { return {HIT_PATH, {}, m_tNow}; }
    /// The part of the line between press and pointer, for highlighting; empty on one spot.
    TPolyBezier GetStretch() const;

protected:
    virtual void OnBegin() {}
    /// The pointer is at `tNow`, an end of the range from `tMin` to `tMax`: sets the live marks.
    virtual void OnRange(uint32_t tNow, uint32_t tMin, uint32_t tMax) = 0;
    virtual void OnEnd() = 0;
    /// False when one spot is enough for the operation.
    virtual bool NeedsRange() const { return true; }

    const COpenPathStream& GetStream() const { return m_spObject->GetStream(); }
    const CBezierRun& GetLine() const { return m_line; }
    uint32_t GetStart() const { return m_t0; }
    int GetCoef() const { return m_nCoef; }

private:
    bool IsSpot() const;

    CPoint m_ptPress;
    int m_nCoef;
    uint32_t m_uDeadZone;
    CBezierRun m_line;
    uint32_t m_t0;
    uint32_t m_tNow;
};

/// The drags that make marks of a class: those of the range are replaced by new ones.
template <class TPoint>
class CRangeInstallDragBase : public CPathRangeDrag {
public:
    CRangeInstallDragBase(const TRangePress& press, const wchar_t* pszLabel)
        : CPathRangeDrag(press), m_pszLabel(pszLabel) {}

protected:
    void OnRange(uint32_t tNow, uint32_t tMin, uint32_t tMax) final;
    void OnEnd() final { CommitMarks<TPoint>(m_spObject, m_pszLabel, m_fnRegister); }
    /// Adds the new marks of a range.
    virtual void Install(uint32_t, uint32_t, uint32_t) {}
    /// The committed marks inside a range, both ends included.
    TPathMarks<TPoint> GetOld(uint32_t tMin, uint32_t tMax) const;
    /// The new mark at `t`, made when it is missing.
    boost::shared_ptr<TPoint> MarkAt(uint32_t t);

private:
    const wchar_t* m_pszLabel;
    TPathMarks<TPoint> m_vNew;
};

extern template class CRangeInstallDragBase<CPathWidthControlPoint>;
extern template class CRangeInstallDragBase<CPathTransControlPoint>;
extern template class CRangeInstallDragBase<CPathAlphaControlPoint>;

/// Begins the drag of an operation (EWidthType); null for one that is unsupported.
boost::shared_ptr<CPathRangeDrag> BeginRangeDrag(int nType, const TRangePress& press);
