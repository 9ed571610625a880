#include "core/Tools/ShapePixels.h"

#include <array>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double TOLERANCE = 0.25;   ///< maximum distance between a curve and its lines, in pixels
constexpr double FURTHEST = 1 << 24; ///< pixels; products of two differences stay within 64 bits
constexpr double MOST_LINES = 4096;
constexpr double CIRCLE = 0.5522847498307936; ///< handle length for a quarter of a unit circle

struct TPlace {
    double x;
    double y;
};
using TCurve = std::array<TPlace, 4>;

int32_t Round(double d) { return static_cast<int32_t>(std::floor(d + 0.5)); }

// Rounds down; `nBy` is positive.
int64_t DivideDown(int64_t n, int64_t nBy) { return n / nBy - (n % nBy < 0); }

int32_t PixelOf(int64_t nFine) { return static_cast<int32_t>(DivideDown(nFine + FINE / 2, FINE)); }

int64_t ToFine(double d) {
    return static_cast<int64_t>(std::floor(std::clamp(d, -FURTHEST, FURTHEST) * FINE + 0.5));
}
TFinePoint ToFine(const TPlace& place) { return {ToFine(place.x), ToFine(place.y)}; }

// Enough lines for the second differences of the handles; the first point is not added.
void AddCurve(const TCurve& curve, std::vector<TFinePoint>& vPoints) {
    const auto bend = [&](size_t n) {
        const double x = curve[n].x - 2 * curve[n + 1].x + curve[n + 2].x;
        const double y = curve[n].y - 2 * curve[n + 1].y + curve[n + 2].y;
        return std::sqrt(x * x + y * y);
    };
    const double dLines = std::ceil(std::sqrt(0.75 * std::max(bend(0), bend(1)) / TOLERANCE));
    const int nLines = static_cast<int>(std::clamp(dLines, 1.0, MOST_LINES));
    for (int n = 1; n <= nLines; ++n) {
        const double f = static_cast<double>(n) / nLines, g = 1 - f;
        const std::array<double, 4> aWeights{g * g * g, 3 * g * g * f, 3 * g * f * f, f * f * f};
        TPlace sum{0, 0};
        for (size_t i = 0; i < 4; ++i) {
            sum.x += aWeights[i] * curve[i].x;
            sum.y += aWeights[i] * curve[i].y;
        }
        vPoints.push_back(ToFine(sum));
    }
}

TPlace ToPlace(CPoint pt) { return {static_cast<double>(pt.x), static_cast<double>(pt.y)}; }

} // namespace

void CShapePixels::Add(CPoint pt, int64_t nAlong) {
    if (pt.x >= m_rcClip.left && pt.x < m_rcClip.right && pt.y >= m_rcClip.top && pt.y < m_rcClip.bottom)
        m_vPixels.push_back({pt, nAlong});
}

void CShapePixels::AddLine(TFinePoint from, TFinePoint to) {
    // A step moves by one pixel on the longer axis; the clip limits the steps on that axis.
    const bool bWide = std::abs(to.x - from.x) >= std::abs(to.y - from.y);
    const int64_t nMain = bWide ? from.x : from.y, nSide = bWide ? from.y : from.x;
    int64_t nMainWay = (bWide ? to.x : to.y) - nMain, nSideWay = (bWide ? to.y : to.x) - nSide;
    const int64_t nLow = std::min(nSide, nSide + nSideWay), nHigh = std::max(nSide, nSide + nSideWay);
    const int64_t nFirst = PixelOf(nMain), nLast = PixelOf(nMain + nMainWay);
    const int nStep = nMainWay < 0 ? -1 : 1;
    nMainWay *= nStep;
    nSideWay *= nStep;
    const int64_t nClipLow = bWide ? m_rcClip.left : m_rcClip.top;
    const int64_t nClipHigh = (bWide ? m_rcClip.right : m_rcClip.bottom) - 1;
    for (int64_t n = std::max(std::min(nFirst, nLast), nClipLow);
         n <= std::min(std::max(nFirst, nLast), nClipHigh); ++n) {
        const int64_t nOn = nMainWay ? DivideDown((n * FINE - nMain) * nSideWay, nMainWay) : 0;
        const int32_t nOther = PixelOf(std::clamp(nSide + nOn, nLow, nHigh));
        const int32_t nHere = static_cast<int32_t>(n);
        Add(bWide ? CPoint{nHere, nOther} : CPoint{nOther, nHere}, m_nAlong + (n - nFirst) * nStep);
    }
    m_nAlong += (nLast - nFirst) * nStep;
}

void CShapePixels::AddPolyline(std::span<const TFinePoint> points) {
    if (points.size() == 1) AddLine(points[0], points[0]);
    for (size_t idx = 1; idx < points.size(); ++idx) AddLine(points[idx - 1], points[idx]);
}

// For every row and every column the two nearest points of the line.
void CShapePixels::AddEllipse(const CRect& rc) {
    const double dRadiusX = (rc.right - rc.left) / 2.0;
    const double dRadiusY = (rc.bottom - rc.top) / 2.0;
    const double dX = rc.left + dRadiusX;
    const double dY = rc.top + dRadiusY;
    const auto reach = [](double d, double dRadius) {
        const double dRatio = dRadius > 0 ? d / dRadius : 0;
        return std::sqrt(std::max(0.0, 1 - dRatio * dRatio));
    };
    for (int32_t y = std::max(rc.top, m_rcClip.top); y <= rc.bottom && y < m_rcClip.bottom; ++y)
        for (const int nSide : {-1, 1}) Add({Round(dX + nSide * dRadiusX * reach(y - dY, dRadiusY)), y}, 0);
    for (int32_t x = std::max(rc.left, m_rcClip.left); x <= rc.right && x < m_rcClip.right; ++x)
        for (const int nSide : {-1, 1}) Add({x, Round(dY + nSide * dRadiusY * reach(x - dX, dRadiusX))}, 0);
}

std::vector<TFinePoint> ToFine(std::span<const CPoint> points) {
    std::vector<TFinePoint> vPoints;
    for (const CPoint pt : points) vPoints.push_back(ToFine(ToPlace(pt)));
    return vPoints;
}

std::vector<TFinePoint> FlattenCurves(std::span<const CPoint> points) {
    if (points.empty()) return {};
    std::vector<TFinePoint> vPoints{ToFine(ToPlace(points[0]))};
    for (size_t idx = 0; idx + 3 < points.size(); idx += 3)
        AddCurve({ToPlace(points[idx]), ToPlace(points[idx + 1]), ToPlace(points[idx + 2]),
                  ToPlace(points[idx + 3])},
                 vPoints);
    return vPoints;
}

std::vector<TFinePoint> FlattenEllipse(const CRect& rc) {
    const double dX = (rc.right - rc.left) / 2.0, dY = (rc.bottom - rc.top) / 2.0;
    const auto place = [&](double x, double y) {
        return TPlace{rc.left + dX + x * dX, rc.top + dY + y * dY};
    };
    std::vector<TFinePoint> vPoints{ToFine(place(1, 0))};
    // Clockwise from the right; each quarter begins a quarter turn further.
    constexpr TPlace TURNS[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    for (const TPlace& t : TURNS)
        AddCurve({place(t.x, t.y), place(t.x - CIRCLE * t.y, t.y + CIRCLE * t.x),
                  place(-t.y + CIRCLE * t.x, t.x + CIRCLE * t.y), place(-t.y, t.x)},
                 vPoints);
    return vPoints;
}

CRect BoundsOf(std::span<const TFinePoint> points) {
    CRect rc;
    for (const TFinePoint& pt : points)
        rc = rc.Union(CRect(CPoint{PixelOf(pt.x), PixelOf(pt.y)}, CSize{1, 1}));
    return rc;
}
