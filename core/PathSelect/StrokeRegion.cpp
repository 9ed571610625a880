#include "core/PathSelect/StrokeRegion.h"

#include "core/Base/FixedMath.h"
#include "core/Tools/OverlayBox.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace {

using TLine = std::vector<CPoint>;

constexpr int32_t BANDS = 64;
constexpr double MOST_CHORDS = 256; ///< of one curve

int SideOf(CPoint from, CPoint to, CPoint pt) {
    const int64_t n = Cross(to - from, pt - from);
    return (n > 0) - (n < 0);
}

bool IsBetween(CPoint pt, CPoint a, CPoint b) {
    return pt.x >= std::min(a.x, b.x) && pt.x <= std::max(a.x, b.x) && pt.y >= std::min(a.y, b.y) &&
           pt.y <= std::max(a.y, b.y);
}

bool IsOnLine(CPoint pt, CPoint a, CPoint b) { return SideOf(a, b, pt) == 0 && IsBetween(pt, a, b); }

// True when two lines cross each other; those that only touch do not.
bool DoCross(CPoint a, CPoint b, CPoint c, CPoint d) {
    return SideOf(a, b, c) * SideOf(a, b, d) < 0 && SideOf(c, d, a) * SideOf(c, d, b) < 0;
}

// A closed line's winding around a position, 0 outside; nullopt on the line itself.
std::optional<int> WindingAt(const TLine& vLine, CPoint pt) {
    int nWinding = 0;
    for (size_t n = 0; n < vLine.size(); ++n) {
        const CPoint from = vLine[n], to = vLine[(n + 1) % vLine.size()];
        if (IsOnLine(pt, from, to)) return std::nullopt;
        if ((from.y <= pt.y) == (to.y <= pt.y)) continue;
        const int nSide = SideOf(from, to, pt);
        if (to.y > from.y && nSide > 0) ++nWinding;
        if (to.y < from.y && nSide < 0) --nWinding;
    }
    return nWinding;
}

// In chords that stay within two path units of the curve.
void AddCurve(const CBezier& curve, TLine& vLine) {
    const auto bend = [](CPoint a, CPoint b, CPoint c) {
        return std::hypot(a.x - 2.0 * b.x + c.x, a.y - 2.0 * b.y + c.y);
    };
    const double dBend = std::max(bend(curve.p0, curve.p1, curve.p2), bend(curve.p1, curve.p2, curve.p3));
    const auto uSteps =
        static_cast<uint32_t>(std::clamp(std::ceil(std::sqrt(0.375 * dBend)), 1.0, MOST_CHORDS));
    for (uint32_t u = 1; u < uSteps; ++u) vLine.push_back(curve.PointAt(BEZIER_T_RESOLUTION / uSteps * u));
    vLine.push_back(curve.p3);
}

std::vector<TLine> LinesOf(const CPathObject& path) {
    std::vector<TLine> vLines;
    for (const TPolyBezier& vCurve : path.GetStream().GetShape(STATE_COMMITTED)) {
        if (vCurve.empty()) continue;
        TLine vLine{vCurve.front()};
        for (size_t n = 0; n + 3 < vCurve.size(); n += 3)
            AddCurve({vCurve[n], vCurve[n + 1], vCurve[n + 2], vCurve[n + 3]}, vLine);
        vLines.push_back(std::move(vLine));
    }
    return vLines;
}

} // namespace

CStrokeRegion::CStrokeRegion(std::vector<CPoint> vCorners) : m_vCorners(std::move(vCorners)) {
    for (const CPoint pt : m_vCorners) m_rcBounds = WithPoint(m_rcBounds, pt);
    m_nBand = m_rcBounds.Height() / BANDS + 1;
    m_vBands.resize(BANDS);
    for (size_t n = 0; n < m_vCorners.size(); ++n) {
        const auto [upper, lower] = std::minmax(m_vCorners[n], m_vCorners[(n + 1) % m_vCorners.size()],
                                                [](const CPoint& a, const CPoint& b) { return a.y < b.y; });
        for (size_t nBand = BandAt(upper.y); nBand <= BandAt(lower.y); ++nBand)
            m_vBands[nBand].push_back({upper, lower});
    }
}

// Positions beyond the region belong to its first or last band.
size_t CStrokeRegion::BandAt(int32_t y) const {
    return static_cast<size_t>(std::clamp((y - m_rcBounds.top) / m_nBand, 0, BANDS - 1));
}

CStrokeRegion::CStrokeRegion(CPoint ptFrom, CPoint ptTo)
    : CStrokeRegion({ptFrom, {ptTo.x, ptFrom.y}, ptTo, {ptFrom.x, ptTo.y}}) {}

bool CStrokeRegion::Contains(CPoint pt) const {
    if (!m_rcBounds.Contains(pt)) return false;
    bool bInside = false;
    for (const auto& [upper, lower] : m_vBands[BandAt(pt.y)]) {
        if (IsOnLine(pt, upper, lower)) return true;
        if ((upper.y <= pt.y) != (lower.y <= pt.y) && SideOf(upper, lower, pt) > 0) bInside = !bInside;
    }
    return bInside;
}

bool CStrokeRegion::CrossesEdge(CPoint ptFrom, CPoint ptTo) const {
    if (WithPoint(WithPoint({}, ptFrom), ptTo).Intersect(m_rcBounds).IsEmpty()) return false;
    const auto [yUpper, yLower] = std::minmax(ptFrom.y, ptTo.y);
    for (size_t nBand = BandAt(yUpper); nBand <= BandAt(yLower); ++nBand)
        for (const auto& [upper, lower] : m_vBands[nBand])
            if (DoCross(ptFrom, ptTo, upper, lower)) return true;
    return false;
}

bool CStrokeRegion::Holds(const CPathObject& path) const {
    const std::vector<TLine> vLines = LinesOf(path);
    for (const TLine& vLine : vLines)
        for (size_t n = 0; n < vLine.size(); ++n)
            if (!Contains(vLine[n]) || CrossesEdge(vLine[n], vLine[(n + 1) % vLine.size()])) return false;
    return !vLines.empty();
}

bool CStrokeRegion::Touches(const CPathObject& path) const {
    const std::vector<TLine> vLines = LinesOf(path);
    for (const TLine& vLine : vLines)
        for (size_t n = 0; n < vLine.size(); ++n)
            if (Contains(vLine[n]) || CrossesEdge(vLine[n], vLine[(n + 1) % vLine.size()])) return true;
    // The region may lie in the middle of the ink.
    return std::ranges::any_of(vLines, [&](const TLine& vLine) {
        return !m_vCorners.empty() && WindingAt(vLine, m_vCorners.front()).value_or(1) != 0;
    });
}
