// Points on an open path, positioned by a parameter.
#pragma once

#include "core/PathObject/PathControlPointBase.h"
#include "core/PathObject/PathLine.h"

#include <boost/weak_ptr.hpp>

#include <algorithm>

/// The base of width points, cuts and opacity marks: their parameter. The position is a cache, refreshed
/// before every rebuild and never stored.
class CPathMark : public CPathControlPointBase, public boost::enable_shared_from_this<CPathMark> {
public:
    CPathMark(const boost::weak_ptr<const IPathLine>& wpLine, const CDualValue<uint32_t>& t)
        : m_wpLine(wpLine), m_t(t) {}

    /// Path parameter, 16.16.
    const CDualValue<uint32_t>& GetParameter() const { return m_t; }
    void SetParameter(const CDualValue<uint32_t>& t) { m_t = t; }
    /// The path that the mark belongs to; null for none yet.
    void SetLine(const boost::weak_ptr<const IPathLine>& wpLine) { m_wpLine = wpLine; }
    CPoint GetPosition(size_t state) const { return m_position[state]; }
    CPoint GetTangent(size_t state) const { return m_tangent[state]; }
    void SetPlace(size_t state, CPoint position, CPoint tangent) {
        m_position[state] = position;
        m_tangent[state] = tangent;
    }
    TPathHit HitMark(const TPathPick& pick) override;
    void Commit() override { m_t.Commit(); }
    void Cancel() override { m_t.Cancel(); }
    /// A copy of the position for a drag: on release the mark moves to the nearest position on the path.
    boost::shared_ptr<CDualValue<CPoint>> DragAnchorPoint(bool bSymmetric);

protected:
    /// The tag of the stored form.
    virtual uint32_t GetTag() const = 0;

    boost::weak_ptr<const IPathLine> m_wpLine;
    CDualValue<uint32_t> m_t;

private:
    CDualValue<CPoint> m_position;
    CDualValue<CPoint> m_tangent;
};

/// The marks of one class on a path.
template <class TPoint>
using TPathMarks = std::vector<boost::shared_ptr<TPoint>>;

/// Marks in their order along the path.
template <class TPoints>
TPoints SortedByParameter(TPoints vPoints, size_t state) {
    std::stable_sort(vPoints.begin(), vPoints.end(), [&](const auto& spA, const auto& spB) {
        return spA->GetParameter()[state] < spB->GetParameter()[state];
    });
    return vPoints;
}

/// The distance of a point from `from` along a direction, 0 behind it or without direction.
uint32_t DistanceAlong(CPoint from, CPoint direction, CPoint pt);
/// A point `nDistance` from `from` along a direction.
CPoint PointAlong(CPoint from, CPoint direction, int64_t nDistance);
/// The direction rotated by whole degrees, clockwise on the screen.
CPoint Turned(CPoint direction, int nDegrees);
/// The counterclockwise angle from `from` to `toward` in degrees, clamped to 1 to 179.
uint32_t AngleBetween(CPoint from, CPoint toward);
