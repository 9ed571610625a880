// Anchors of paths.
#pragma once

#include "core/PathObject/PathControlPointBase.h"
#include "core/PathOutline/Outline.h"

/// An anchor with handles relative to it, towards the anchor before (back) and behind (fore). A missing
/// handle counts as zero. A handle's component of -1, which cannot be stored, is set to 0. Path units.
class CPathControlPoint : public CPathControlPointBase,
                          public boost::enable_shared_from_this<CPathControlPoint> {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("PCPA");

    CPathControlPoint() = default;
    explicit CPathControlPoint(CPoint pt) : m_anchor(pt) {}

    void Draw(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection) const override;
    CSerializer Serialize() const override;
    void Deserialize(CDeserializer& reader) override;
    TPathHit HitMark(const TPathPick& pick) override;
    TPathHit HitHandle(const TPathPick& pick) override;
    bool IsSettled() const override;
    void Commit() override;
    void Cancel() override;

    const CDualValue<CPoint>& GetAnchor() const { return m_anchor; }
    bool HasBack() const { return m_bBack; }
    bool HasFore() const { return m_bFore; }
    /// A handle's value in a state, zero for a missing one.
    CPoint GetBack(size_t state) const { return m_bBack ? m_back[state] : CPoint{}; }
    CPoint GetFore(size_t state) const { return m_bFore ? m_fore[state] : CPoint{}; }
    void SetAnchor(const CDualValue<CPoint>& value) { m_anchor = value; }
    /// A value of zeros in both states removes the handle.
    void SetBack(const CDualValue<CPoint>& value);
    void SetFore(const CDualValue<CPoint>& value);
    /// True when the committed values can be stored.
    bool IsStorable() const {
        return IsStorablePoint(m_anchor[STATE_COMMITTED]) && IsStorablePoint(GetBack(STATE_COMMITTED)) &&
               IsStorablePoint(GetFore(STATE_COMMITTED));
    }
    /// All values of one state.
    TOutlinePoint At(size_t state) const { return {m_anchor[state], GetBack(state), GetFore(state)}; }

    /// A copy of a handle for a drag, created as zeros if missing. On release the handle takes its value;
    /// with `bSymmetric` the other handle is turned too, keeping its length; a handle of zeros turns nothing.
    /// Zeros in both states remove the handle.
    boost::shared_ptr<CDualValue<CPoint>> DragBackHandle(bool bSymmetric);
    boost::shared_ptr<CDualValue<CPoint>> DragForeHandle(bool bSymmetric);
    /// The same for the anchor; its handles move with it.
    boost::shared_ptr<CDualValue<CPoint>> DragAnchorPoint(bool bSymmetric);
    /// Maps the values of both states by a function of positions.
    void Transform(const boost::function<CPoint(CPoint)>& fnMap);
    /// Sets the live values to the committed ones mapped.
    void TransformLive(const boost::function<CPoint(CPoint)>& fnMap);
    /// Copies all values of another anchor.
    void Assign(const CPathControlPoint& from);

private:
    struct THandle {
        bool& bHas;
        CDualValue<CPoint>& value;
    };
    void MapTo(size_t state, size_t from, const boost::function<CPoint(CPoint)>& fnMap);
    THandle Back() { return {m_bBack, m_back}; }
    THandle Fore() { return {m_bFore, m_fore}; }
    boost::shared_ptr<CDualValue<CPoint>> DragHandle(THandle (CPathControlPoint::*fnOwn)(),
                                                     THandle (CPathControlPoint::*fnOther)(),
                                                     bool bSymmetric);

    CDualValue<CPoint> m_anchor;
    bool m_bBack = false;
    CDualValue<CPoint> m_back;
    bool m_bFore = false;
    CDualValue<CPoint> m_fore;
};

/// An anchor of an open path's centre line.
class COpenPathControlPoint : public CPathControlPoint {
public:
    using CPathControlPoint::CPathControlPoint;
};
