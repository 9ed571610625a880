#include "core/PathFit/InkOutline.h"

#include "core/PathFit/CurveFit.h"

#include <algorithm>

namespace {

constexpr double CELL = 8;
constexpr double ROW = 4;
/// All of so few lines are visited sooner than a grid is made.
constexpr size_t FEW_LINES = 300;

bool IsNearLine(const CInkOutline::TLine& line, TInkVector pt, double d) {
    const TInkVector way = line.to - line.from, off = pt - line.from;
    const double dAlong = Dot(off, way), dSquare = Dot(way, way);
    if (dAlong <= 0) return Dot(off, off) <= d * d;
    const TInkVector rest = pt - line.to;
    if (dAlong >= dSquare) return Dot(rest, rest) <= d * d;
    const double dAside = Cross(way, off);
    return dAside * dAside <= d * d * dSquare;
}

void AddLines(std::vector<CInkOutline::TLine>& vLines, const TPolyBezier& vCurve, double dFlatness) {
    constexpr double MOST_PARTS = 64;
    for (size_t i = 0; i + 3 < vCurve.size(); i += 3) {
        const TInkCubic cubic{ToVector(vCurve[i]), ToVector(vCurve[i + 1]), ToVector(vCurve[i + 2]),
                              ToVector(vCurve[i + 3])};
        const auto& [p0, p1, p2, p3] = cubic;
        // A chord's distance from the curve is at most an eighth of the second derivative. Without handles
        // the curve is its chord.
        const bool bStraight = vCurve[i] == vCurve[i + 1] && vCurve[i + 2] == vCurve[i + 3];
        const double dBend =
            bStraight ? 0 : 6 * std::max(LengthOf(p0 - p1 * 2 + p2), LengthOf(p1 - p2 * 2 + p3));
        const int nParts = static_cast<int>(std::min(std::sqrt(dBend / (8 * dFlatness)), MOST_PARTS)) + 1;
        TInkVector from = p0;
        for (int n = 1; n <= nParts; ++n) {
            const TInkVector to = cubic.At(static_cast<double>(n) / nParts);
            vLines.push_back({from, to});
            from = to;
        }
    }
}

int WindingOf(const CInkOutline::TLine& line, TInkVector pt) {
    const auto& [from, to] = line;
    if ((from.y <= pt.y) == (to.y <= pt.y)) return 0;
    if (from.x + (to.x - from.x) * (pt.y - from.y) / (to.y - from.y) >= pt.x) return 0;
    return from.y <= pt.y ? 1 : -1;
}

} // namespace

CInkOutline::CInkOutline(const std::vector<TPolyBezier>& vShape, double dFlatness) : m_vStarts{0} {
    for (const TPolyBezier& vCurve : vShape) {
        AddLines(m_vLines, vCurve, dFlatness);
        m_vStarts.push_back(m_vLines.size());
    }
}

bool CInkOutline::HasNear(TInkVector pt, double d, size_t& idxFound) {
    const auto isNear = [&](size_t n) {
        if (!IsNearLine(m_vLines[n], pt, d)) return false;
        idxFound = n;
        return true;
    };
    if (VisitAround(idxFound, m_vLines.size(), isNear)) return true;
    if (m_vLines.size() <= FEW_LINES) {
        for (size_t n = 0; n < m_vLines.size(); ++n)
            if (isNear(n)) return true;
        return false;
    }
    if (!m_cells) {
        std::vector<TInkBox> vBoxes;
        vBoxes.reserve(m_vLines.size());
        for (const auto& [from, to] : m_vLines) vBoxes.push_back(TInkBox{from, from}.Union({to, to}));
        m_cells.emplace(vBoxes, CELL);
    }
    return m_cells->Visit(TInkBox{pt, pt}.Grown(d), isNear);
}

bool CInkOutline::IsFilledBy(size_t nCurve, TInkVector pt) {
    int nWinding = 0;
    const auto add = [&](size_t n) {
        nWinding += WindingOf(m_vLines[n], pt);
        return false;
    };
    if (nCurve > 0 || m_vLines.size() <= FEW_LINES) {
        for (size_t n = m_vStarts[nCurve]; n < m_vStarts[nCurve + 1]; ++n) add(n);
        return nWinding != 0;
    }
    if (!m_rows) {
        std::vector<TInkBox> vRows;
        vRows.reserve(FirstOfFolds());
        for (size_t n = 0; n < FirstOfFolds(); ++n) {
            const auto [dLow, dHigh] = std::minmax(m_vLines[n].from.y, m_vLines[n].to.y);
            vRows.push_back({{0, dLow}, {0, dHigh}});
        }
        m_rows.emplace(vRows, ROW);
    }
    m_rows->Visit({{0, pt.y}, {0, pt.y}}, add);
    return nWinding != 0;
}
