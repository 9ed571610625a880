#include "core/PathSelect/StrokeRegion.h"

#include "core/Base/FixedMath.h"
#include "core/Tools/OverlayBox.h"
#include "core/Tools/ShapePixels.h"

#include <algorithm>
#include <utility>

namespace {

using TLine = std::vector<CPoint>;

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

std::vector<TLine> LinesOf(const CPathObject& path) {
    std::vector<TLine> vLines;
    for (const TPolyBezier& vCurve : path.GetStream().GetShape(STATE_COMMITTED)) {
        TLine vLine;
        for (const TFinePoint& pt : FlattenCurves(vCurve)) {
            const CPoint ptWhole{static_cast<int32_t>(pt.x / FINE), static_cast<int32_t>(pt.y / FINE)};
            if (vLine.empty() || vLine.back() != ptWhole) vLine.push_back(ptWhole);
        }
        if (!vLine.empty()) vLines.push_back(std::move(vLine));
    }
    return vLines;
}

} // namespace

CStrokeRegion::CStrokeRegion(std::vector<CPoint> vCorners) : m_vCorners(std::move(vCorners)) {
    for (const CPoint pt : m_vCorners) m_rcBounds = WithPoint(m_rcBounds, pt);
}

CStrokeRegion::CStrokeRegion(CPoint ptFrom, CPoint ptTo)
    : CStrokeRegion({ptFrom, {ptTo.x, ptFrom.y}, ptTo, {ptFrom.x, ptTo.y}}) {}

bool CStrokeRegion::Contains(CPoint pt) const {
    if (!m_rcBounds.Contains(pt)) return false;
    bool bInside = false;
    for (size_t n = 0; n < m_vCorners.size(); ++n) {
        const CPoint from = m_vCorners[n], to = m_vCorners[(n + 1) % m_vCorners.size()];
        if (IsOnLine(pt, from, to)) return true;
        if ((from.y <= pt.y) != (to.y <= pt.y) && (SideOf(from, to, pt) > 0) == (to.y > from.y))
            bInside = !bInside;
    }
    return bInside;
}

bool CStrokeRegion::CrossesEdge(CPoint ptFrom, CPoint ptTo) const {
    if (WithPoint(WithPoint({}, ptFrom), ptTo).Intersect(m_rcBounds).IsEmpty()) return false;
    for (size_t n = 0; n < m_vCorners.size(); ++n)
        if (DoCross(ptFrom, ptTo, m_vCorners[n], m_vCorners[(n + 1) % m_vCorners.size()])) return true;
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
