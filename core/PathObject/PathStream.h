// Paths as they are stored: their points and the data computed from them. Positions are path units, eighths
// of a canvas pixel; `state` is 0 for the committed shape, 1 for the live one.
#pragma once

#include "core/PathFill/PathFill.h"
#include "core/PathObject/OpacityField.h"
#include "core/PathObject/PathControlPoint.h"
#include "core/PathObject/PathLine.h"
#include "core/PathObject/PathSnapshot.h"
#include "core/PathOutline/WidthProfile.h"

#include <vector>

/// A path of any kind. Operations that need an anchor raise internal_error without one; more than 65535
/// anchors raise refused_error.
class CPathStream : public IPathLine, public boost::enable_shared_from_this<CPathStream>, boost::noncopyable {
public:
    /// Rebuilds the data that depend on the points, in both states.
    virtual void Update() = 0;
    /// The same for the live state only.
    virtual void UpdateDrag() = 0;
    /// False for committed values that Deserialize would refuse.
    virtual bool IsStorable() const = 0;
    /// Ends a drag: the live values of all points become the committed ones, or the other way round.
    virtual void Commit() = 0;
    virtual void Cancel() = 0;
    /// Bounds of a state's shape.
    virtual CRect RectIncludingPath(size_t state) const = 0;
    /// The closed curves whose areas a state's shape fills.
    virtual std::vector<TPolyBezier> GetShape(size_t state) const = 0;
    /// The opacity of a state's shape; null for an opaque one.
    virtual boost::shared_ptr<const COpacityField> GetOpacity(size_t) const { return {}; }
    /// Adds a state's coverage to a tile of a plane whose origin is the canvas's corner.
    virtual void RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile, size_t state) const = 0;
    /// Draws the live state: the line (with `bOutline` its outline too), its points and ends.
    virtual void DrawOutline(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection,
                             TColor color, bool bOutline) const = 0;
    /// Finds the part under the pointer: anchors (`bAnchor`), then their handles as far as they are drawn
    /// (`bHandle`), then width points, cuts and ends with their handles (`bTerm`). Of each kind the nearest.
    virtual TPathHit HitControlPoints(const TPathPick& pick, bool bAnchor, bool bHandle,
                                      bool bTerm) const = 0;
    virtual CSerializer Serialize() const = 0;
    /// Raises deserialize_error; existing points of the path are reused, not replaced.
    virtual void Deserialize(CDeserializer& reader) = 0;
    virtual boost::shared_ptr<TPathSnapshot> CreateSnapshot() const = 0;
    virtual void ApplySnapshot(const TPathSnapshot& snapshot) = 0;
    /// Inserts an anchor at `t` without changing the line's shape and returns it; null at an anchor, where
    /// nothing is done.
    virtual boost::shared_ptr<CPathControlPoint> Divide(uint32_t t) = 0;
    virtual boost::shared_ptr<CPathControlPoint> AppendControlPoint(CPoint pt) = 0;
    /// Inserts an anchor before `before`; raises internal_error when that is no anchor of the path.
    virtual boost::shared_ptr<CPathControlPoint> InsertControlPoint(const CPathControlPoint& before,
                                                                    CPoint pt) = 0;
    /// Raises internal_error when the point is no anchor of the path.
    virtual void RemoveControlPoint(const CPathControlPoint& point) = 0;
    bool Contains(const CPathControlPoint& point) const { return IndexOf(point) < ControlPointCount(); }
    virtual size_t ControlPointCount() const = 0;
    /// The anchor at an index below ControlPointCount, in path order.
    virtual boost::shared_ptr<CPathControlPoint> GetControlPoint(size_t idx) const = 0;
    /// An anchor's index; ControlPointCount for a point that is no anchor of the path.
    virtual size_t IndexOf(const CPathControlPoint& point) const = 0;
    /// Maps all positions of both states by a function.
    virtual void Transform(const boost::function<CPoint(CPoint)>& fnMap) = 0;
    /// Multiplies what a stroke's width is made of; nothing is less than 1 afterwards.
    virtual void ScaleWidths(double) {}
    /// Sets the live state to the committed one with its positions mapped and what a stroke's width is made
    /// of multiplied, nothing to less than 1.
    virtual void TransformLive(const boost::function<CPoint(CPoint)>& fnMap, double dWidth) = 0;
    /// The whole line, closed paths back to their first anchor.
    virtual TPolyBezier BezierPoints(size_t state) const = 0;

    /// The position and the direction of the line at `t`, clamped to its ends.
    CPoint PointAt(uint32_t t, size_t state) const;
    CPoint TangentAt(uint32_t t, size_t state) const;
    /// The position nearest to a point; raises internal_error for a path without anchors.
    TPathPlace SearchNearPointOnPath(CPoint pt, size_t state) const;
    /// To the committed line.
    int64_t DistanceSquared(CPoint pt) const {
        return SearchNearPointOnPath(pt, STATE_COMMITTED).nDistanceSquared;
    }
};

/// The position and direction at a parameter of a line given as its segments, at least one.
struct TLinePlace {
    CPoint point;
    CPoint tangent;
};
TLinePlace PlaceOnLine(const std::vector<CBezier>& vSegments, uint32_t t);

/// The nearest mark or handle under the pointer among some points; at the same distance marks come before
/// handles, and the last drawn before others.
template <class TPoints>
TPathHit HitPoints(const TPoints& points, const TPathPick& pick, bool bMark, bool bHandle) {
    TPathHit hit;
    for (auto it = points.rbegin(); bMark && it != points.rend(); ++it)
        hit = Nearer(hit, (*it)->HitMark(pick));
    for (auto it = points.rbegin(); bHandle && it != points.rend(); ++it)
        hit = Nearer(hit, (*it)->HitHandle(pick));
    return hit;
}

/// The base of paths whose anchors have the class `T`.
template <class T>
class CPathStreamImpl : public CPathStream {
public:
    using TPointList = std::list<boost::shared_ptr<T>>;

    void Commit() override;
    void Cancel() override;
    boost::shared_ptr<CPathControlPoint> Divide(uint32_t t) override;
    boost::shared_ptr<CPathControlPoint> AppendControlPoint(CPoint pt) override;
    boost::shared_ptr<CPathControlPoint> InsertControlPoint(const CPathControlPoint& before,
                                                            CPoint pt) override;
    void RemoveControlPoint(const CPathControlPoint& point) override;
    size_t ControlPointCount() const override { return m_lstControlPoint.size(); }
    boost::shared_ptr<CPathControlPoint> GetControlPoint(size_t idx) const override {
        return *std::next(m_lstControlPoint.begin(), static_cast<std::ptrdiff_t>(idx));
    }
    size_t IndexOf(const CPathControlPoint& point) const override;
    bool IsStorable() const override;
    void Transform(const boost::function<CPoint(CPoint)>& fnMap) override;
    void TransformLive(const boost::function<CPoint(CPoint)>& fnMap, double dWidth) override;
    std::vector<CBezier> GetSegments(size_t state) const override;
    TPolyBezier BezierPoints(size_t state) const override;

    /// In path order.
    const TPointList& GetControlPoints() const { return m_lstControlPoint; }

protected:
    virtual bool IsClosed() const = 0;
    /// Finds an anchor or else a handle.
    TPathHit HitAnchors(const TPathPick& pick, bool bAnchor, bool bHandle) const;
    /// Called after an anchor was inserted at index `idx`, dividing that segment at the fraction `f`.
    virtual void OnInserted(size_t, uint32_t) {}
    /// Called before the anchor `idx` is removed.
    virtual void OnRemoving(size_t) {}
    TOutlinePoints GetAnchors(size_t state) const;
    CSerializer SerializePoints() const;
    void DeserializePoints(CDeserializer& reader);

    TPointList m_lstControlPoint;
};

extern template class CPathStreamImpl<CPathControlPoint>;
extern template class CPathStreamImpl<COpenPathControlPoint>;
