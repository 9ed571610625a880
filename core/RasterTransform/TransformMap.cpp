#include "core/RasterTransform/TransformMap.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr double FARTHEST = 1 << 17; ///< of a corner, in pixels
constexpr double LEAST_AREA = 1;     ///< of each corner's parallelogram, in pixels
/// The least area of a corner's parallelogram beside the largest one: beyond it the picture's far end has no
/// pixels left.
constexpr double LEAST_PART = 1.0 / 4096;

using TRow = std::array<double, 9>; ///< an equation: eight factors and the right side

// Solves the equations in place by elimination, the largest factor of a column first.
std::array<double, 8> Solve(std::array<TRow, 8> aRows) {
    for (size_t n = 0; n < aRows.size(); ++n) {
        size_t nPivot = n;
        for (size_t i = n + 1; i < aRows.size(); ++i)
            if (std::abs(aRows[i][n]) > std::abs(aRows[nPivot][n])) nPivot = i;
        std::swap(aRows[n], aRows[nPivot]);
        for (size_t i = 0; i < aRows.size(); ++i) {
            if (i == n) continue;
            const double dFactor = aRows[i][n] / aRows[n][n];
            for (size_t k = n; k < 9; ++k) aRows[i][k] -= dFactor * aRows[n][k];
        }
    }
    std::array<double, 8> adResult;
    for (size_t n = 0; n < aRows.size(); ++n) adResult[n] = aRows[n][8] / aRows[n][n];
    return adResult;
}

// The matrix of the mapping from a rectangle at the origin.
std::array<double, 9> MatrixTo(CSize sz, const TQuad& quad) {
    const double w = sz.cx, h = sz.cy;
    const TQuad corners{TPosition{0, 0}, {w, 0}, {w, h}, {0, h}};
    std::array<TRow, 8> aRows;
    for (size_t n = 0; n < 4; ++n) {
        const auto [x, y] = corners[n];
        const auto [u, v] = quad[n];
        aRows[2 * n] = {x, y, 1, 0, 0, 0, -x * u, -y * u, u};
        aRows[2 * n + 1] = {0, 0, 0, x, y, 1, -x * v, -y * v, v};
    }
    std::array<double, 9> adMatrix;
    std::ranges::copy(Solve(aRows), adMatrix.begin());
    adMatrix[8] = 1;
    return adMatrix;
}

// The inverse but for a factor.
std::array<double, 9> Inverse(const std::array<double, 9>& m) {
    return {m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
            m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
            m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]};
}

bool IsWhole(TPosition pt) { return std::floor(pt.x) == pt.x && std::floor(pt.y) == pt.y; }

// The step of one pixel along an edge that is as long as it was, straight; nullopt for another edge.
std::optional<CPoint> UnitOf(TPosition edge, int32_t nLength) {
    if (edge.y == 0 && std::abs(edge.x) == nLength) return CPoint{edge.x < 0 ? -1 : 1, 0};
    if (edge.x == 0 && std::abs(edge.y) == nLength) return CPoint{0, edge.y < 0 ? -1 : 1};
    return std::nullopt;
}

std::optional<TPixelMove> PixelMoveOf(const CRect& rcSource, const TQuad& quad) {
    if (!std::ranges::all_of(quad, IsWhole)) return std::nullopt;
    const auto right = UnitOf(quad[1] - quad[0], rcSource.Width());
    const auto down = UnitOf(quad[3] - quad[0], rcSource.Height());
    if (!right || !down || !(quad[1] + (quad[3] - quad[0]) == quad[2])) return std::nullopt;
    // The inverse of a matrix of unit vectors is its transpose.
    const CPoint ptRight{right->x, down->x}, ptDown{right->y, down->y};
    const auto x = static_cast<int32_t>(quad[0].x), y = static_cast<int32_t>(quad[0].y);
    // A unit that points backwards begins at the far side of the first pixel.
    const CPoint ptBack{right->x + right->y < 0 ? -1 : 0, down->x + down->y < 0 ? -1 : 0};
    return TPixelMove{{rcSource.left - x * ptRight.x - y * ptDown.x + ptBack.x,
                       rcSource.top - x * ptRight.y - y * ptDown.y + ptBack.y},
                      ptRight,
                      ptDown};
}

TPosition CenterOf(CPoint pt) { return {pt.x + 0.5, pt.y + 0.5}; }

} // namespace

TQuad QuadOf(const CRect& rc) {
    const double l = rc.left, t = rc.top, r = rc.right, b = rc.bottom;
    return {TPosition{l, t}, {r, t}, {r, b}, {l, b}};
}

bool IsQuadUsable(const TQuad& quad) {
    double dLeast = 0, dLargest = 0;
    bool bLeft = false, bRight = false;
    for (size_t n = 0; n < 4; ++n) {
        if (!(std::abs(quad[n].x) <= FARTHEST && std::abs(quad[n].y) <= FARTHEST)) return false;
        const double dArea = Cross(quad[(n + 1) % 4] - quad[n], quad[(n + 3) % 4] - quad[n]);
        (dArea < 0 ? bLeft : bRight) = true;
        dLeast = n ? std::min(dLeast, std::abs(dArea)) : std::abs(dArea);
        dLargest = std::max(dLargest, std::abs(dArea));
    }
    return bLeft != bRight && dLeast >= LEAST_AREA && dLeast >= dLargest * LEAST_PART;
}

CRect BoundsOf(const TQuad& quad, const CRect& rcLimit) {
    double l = quad[0].x, t = quad[0].y, r = l, b = t;
    for (const TPosition& pt : quad) {
        l = std::min(l, pt.x), r = std::max(r, pt.x);
        t = std::min(t, pt.y), b = std::max(b, pt.y);
    }
    const CRect rc(static_cast<int32_t>(std::floor(l)), static_cast<int32_t>(std::floor(t)),
                   static_cast<int32_t>(std::ceil(r)), static_cast<int32_t>(std::ceil(b)));
    return rc.Intersect(rcLimit);
}

CTransformMap::CTransformMap(const CRect& rcSource, const TQuad& quad)
    : m_rcSource(rcSource), m_quad(quad), m_ptBase{std::floor(quad[0].x), std::floor(quad[0].y)},
      m_move(PixelMoveOf(rcSource, quad)) {
    TQuad moved = quad;
    for (TPosition& pt : moved) pt = pt - m_ptBase;
    m_adBack = Inverse(MatrixTo(rcSource.Size(), moved));
    const TPosition ptMiddle = (moved[0] + moved[1] + moved[2] + moved[3]) * 0.25;
    // The inverse's sign is free; depths are to be positive inside.
    if (m_adBack[6] * ptMiddle.x + m_adBack[7] * ptMiddle.y + m_adBack[8] < 0)
        for (double& d : m_adBack) d = -d;
    const bool bClockwise = Cross(quad[1] - quad[0], quad[3] - quad[0]) > 0;
    for (size_t n = 0; n < 4; ++n) {
        const TPosition edge = quad[(n + 1) % 4] - quad[n];
        const double dLength = std::sqrt(edge.x * edge.x + edge.y * edge.y) * (bClockwise ? 1 : -1);
        const TPosition normal{-edge.y / dLength, edge.x / dLength};
        m_aEdges[n] = {normal, -(normal.x * quad[n].x + normal.y * quad[n].y)};
    }
}

TSampleLine CTransformMap::GetLine(double y) const {
    const double dDown = y - m_ptBase.y;
    const auto start = [&](size_t n) {
        return m_adBack[n + 1] * dDown + m_adBack[n + 2] - m_adBack[n] * m_ptBase.x;
    };
    TSampleLine line{};
    line.u0 = start(0), line.u1 = m_adBack[0];
    line.v0 = start(3), line.v1 = m_adBack[3];
    line.w0 = start(6), line.w1 = m_adBack[6];
    return line;
}

CTransformMap::TSteps CTransformMap::GetSteps(TPosition pt) const {
    double dDepth;
    const TPosition at = MapBack(pt, dDepth) - TPosition{double(m_rcSource.left), double(m_rcSource.top)};
    const auto step = [&](size_t n) {
        return TPosition{(m_adBack[n] - at.x * m_adBack[6 + n]) / dDepth,
                         (m_adBack[3 + n] - at.y * m_adBack[6 + n]) / dDepth};
    };
    return {step(0), step(1)};
}

double CTransformMap::GetDepthInside(TPosition pt) const {
    double dLeast = FARTHEST;
    for (const TEdge& edge : m_aEdges)
        dLeast = std::min(dLeast, edge.normal.x * pt.x + edge.normal.y * pt.y + edge.dOffset);
    return dLeast;
}

int CTransformMap::GetCover(CPoint pt) const {
    constexpr int FULL = 256;
    constexpr double HALF_DIAGONAL = 0.7072;
    const double dInside = GetDepthInside(CenterOf(pt));
    if (dInside >= HALF_DIAGONAL) return FULL;
    if (dInside <= -HALF_DIAGONAL) return 0;
    // The pixel's square is cut by one edge after the other; relative to its corner the numbers are small.
    std::array<TPosition, 8> aShape{TPosition{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    size_t nPoints = 4;
    for (const TEdge& edge : m_aEdges) {
        const auto distance = [&](TPosition at) {
            return edge.normal.x * (at.x + pt.x) + edge.normal.y * (at.y + pt.y) + edge.dOffset;
        };
        std::array<TPosition, 8> aCut;
        size_t nCut = 0;
        for (size_t n = 0; n < nPoints; ++n) {
            const TPosition a = aShape[n], b = aShape[(n + 1) % nPoints];
            const double dA = distance(a), dB = distance(b);
            if (dA >= 0) aCut[nCut++] = a;
            if ((dA < 0) != (dB < 0)) aCut[nCut++] = a + (b - a) * (dA / (dA - dB));
        }
        aShape = aCut;
        nPoints = nCut;
    }
    double dArea = 0;
    for (size_t n = 2; n < nPoints; ++n) dArea += Cross(aShape[n - 1] - aShape[0], aShape[n] - aShape[0]);
    return std::clamp(static_cast<int>(dArea / 2 * FULL + 0.5), 0, FULL);
}

std::optional<bool> CTransformMap::Holds(const CRect& rc) const {
    const TQuad corners = QuadOf(rc);
    bool bAll = true;
    for (const TEdge& edge : m_aEdges) {
        const auto nInside = std::ranges::count_if(corners, [&](TPosition pt) {
            return edge.normal.x * pt.x + edge.normal.y * pt.y + edge.dOffset >= 0;
        });
        if (nInside == 0) return false;
        bAll = bAll && nInside == 4;
    }
    return bAll ? std::optional(true) : std::nullopt;
}
