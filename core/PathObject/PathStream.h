// Paths as they are stored: their points and what is computed from them. Positions are path units, eighths of
// a canvas pixel; `state` is 0 for the committed shape, 1 for the live one.
#pragma once

#include "core/PathFill/PathFill.h"
#include "core/PathObject/PathControlPoint.h"
#include "core/PathObject/PathLine.h"
#include "core/PathObject/PathSnapshot.h"
#include "core/PathOutline/WidthProfile.h"

#include <vector>

/// A path of any kind. Operations on a path without anchors raise internal_error where they need one; one
/// anchor above 65535 raises refused_error.
class CPathStream : public IPathLine, public boost::enable_shared_from_this<CPathStream>, boost::noncopyable {
public:
    /// Refreshes and rebuilds what depends on the points, in both states.
    virtual void Update() = 0;
    /// The same for the live state; nothing committed changes.
    virtual void UpdateDrag() = 0;
    /// False for committed values that a file's reader would refuse.
    virtual bool IsStorable() const = 0;
    /// The box of the committed shape.
    virtual CRect RectIncludingPath() const = 0;
    /// Adds the committed shape's coverage to a tile of a plane that begins at the canvas's corner.
    virtual void RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile) const = 0;
    /// Draws the live state: the line (with `bOutline` its outline too), its points and ends.
    virtual void DrawOutline(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection,
                             TColor color, bool bOutline) const = 0;
    /// Finds the part under the pointer: anchors, their handles, then width points, cuts, ends. Of each kind
    /// marks come before handles, and handles count only where they are drawn.
    virtual TPathHit HitControlPoints(const TPathPick& pick, bool bAnchor, bool bHandle,
                                      bool bTerm) const = 0;
    virtual CSerializer Serialize() const = 0;
    /// Raises deserialize_error; what is there already of the path's points is filled, not replaced.
    virtual void Deserialize(CDeserializer& reader) = 0;
    virtual boost::shared_ptr<TPathSnapshot> CreateSnapshot() const = 0;
    virtual void ApplySnapshot(const TPathSnapshot& snapshot) = 0;
    /// Puts an anchor on the line at `t` without changing its shape; nothing at an anchor.
    virtual void Divide(uint32_t t) = 0;
    virtual boost::shared_ptr<CPathControlPoint> AppendControlPoint(CPoint pt) = 0;
    /// A new anchor in front of `before`; raises internal_error when that is no anchor of the path.
    virtual boost::shared_ptr<CPathControlPoint> InsertControlPoint(const CPathControlPoint& before,
                                                                    CPoint pt) = 0;
    /// Raises internal_error when the point is no anchor of the path.
    virtual void RemoveControlPoint(const CPathControlPoint& point) = 0;
    virtual bool Contains(const CPathControlPoint& point) const = 0;
    virtual size_t ControlPointCount() const = 0;
    /// Passes all positions of both states through a function.
    virtual void Transform(const boost::function<CPoint(CPoint)>& fnMap) = 0;
    /// The whole line, closed paths back to their first anchor.
    virtual TPolyBezier BezierPoints(size_t state) const = 0;

    /// The place and the direction of the line at `t`, held at its ends.
    CPoint PointAt(uint32_t t, size_t state) const;
    CPoint TangentAt(uint32_t t, size_t state) const;
    /// The place nearest to a point; raises internal_error for a path without anchors.
    TPathPlace SearchNearPointOnPath(CPoint pt, size_t state) const;
    /// Of the committed line.
    int64_t DistanceSquared(CPoint pt) const {
        return SearchNearPointOnPath(pt, STATE_COMMITTED).nDistanceSquared;
    }
};

/// The place at a parameter and the direction there, of a line held as its segments, at least one.
struct TLinePlace {
    CPoint point;
    CPoint tangent;
};
TLinePlace PlaceOnLine(const std::vector<CBezier>& vSegments, uint32_t t);

/// The mark, or else the handle, of one of the points that the pointer is on; the last drawn lies on top.
template <class TPoints>
TPathHit HitPoints(const TPoints& points, const TPathPick& pick, bool bMark, bool bHandle) {
    const auto search = [&](TPathHit (CPathControlPointBase::*fnHit)(const TPathPick&)) {
        TPathHit hit;
        for (auto it = points.rbegin(); it != points.rend() && !hit; ++it) hit = ((**it).*fnHit)(pick);
        return hit;
    };
    TPathHit hit;
    if (bMark) hit = search(&CPathControlPointBase::HitMark);
    if (bHandle && !hit) hit = search(&CPathControlPointBase::HitHandle);
    return hit;
}

/// What paths of anchors of the class `T` have in common.
template <class T>
class CPathStreamImpl : public CPathStream {
public:
    using TPointList = std::list<boost::shared_ptr<T>>;

    void Divide(uint32_t t) override;
    boost::shared_ptr<CPathControlPoint> AppendControlPoint(CPoint pt) override;
    boost::shared_ptr<CPathControlPoint> InsertControlPoint(const CPathControlPoint& before,
                                                            CPoint pt) override;
    void RemoveControlPoint(const CPathControlPoint& point) override;
    bool Contains(const CPathControlPoint& point) const override {
        return IndexOf(point) < m_lstControlPoint.size();
    }
    size_t ControlPointCount() const override { return m_lstControlPoint.size(); }
    bool IsStorable() const override;
    void Transform(const boost::function<CPoint(CPoint)>& fnMap) override;
    std::vector<CBezier> GetSegments(size_t state) const override;
    TPolyBezier BezierPoints(size_t state) const override;

    /// In path order.
    const TPointList& GetControlPoints() const { return m_lstControlPoint; }

protected:
    virtual bool IsClosed() const = 0;
    /// An anchor was put behind the anchor `idx` - 1, dividing that segment at the fraction `f`.
    virtual void OnInserted(size_t, uint32_t) {}
    /// The anchor `idx` is about to go.
    virtual void OnRemoving(size_t) {}
    size_t IndexOf(const CPathControlPoint& point) const;
    TOutlinePoints GetAnchors(size_t state) const;
    CSerializer SerializePoints() const;
    void DeserializePoints(CDeserializer& reader);

    TPointList m_lstControlPoint;
};

extern template class CPathStreamImpl<CPathControlPoint>;
extern template class CPathStreamImpl<COpenPathControlPoint>;
