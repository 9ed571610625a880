#include "core/PathErase/ErasePreview.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

constexpr size_t POINTS_OF_BOX = 32;
constexpr size_t MOST_BOXES = 48;
constexpr double LEAST_WIDTH = 4; ///< edges of thinner strokes are not drawn beside the line

CPoint ToPoint(TVector v) {
    return {static_cast<int32_t>(std::floor(v.x + 0.5)), static_cast<int32_t>(std::floor(v.y + 0.5))};
}

// The line's points from one parameter to the other.
std::vector<TLinePoint> PointsOf(const CStrokeLine& line, const TLineStretch& stretch) {
    std::vector<TLinePoint> vPoints{line.At(stretch.tFirst)};
    for (const TLinePoint& point : line.GetPoints())
        if (point.t > stretch.tFirst && point.t < stretch.tLast) vPoints.push_back(point);
    vPoints.push_back(line.At(stretch.tLast));
    return vPoints;
}

void AddStretch(const CStrokeLine& line, const TLineStretch& stretch,
                std::vector<std::vector<CPoint>>& vLines) {
    const std::vector<TLinePoint> vPoints = PointsOf(line, stretch);
    std::vector<CPoint> vCentre, vLeft, vRight;
    double dWidest = 0;
    for (size_t n = 0; n < vPoints.size(); ++n) {
        const TVector at{vPoints[n].x, vPoints[n].y};
        const TLinePoint &before = vPoints[n == 0 ? 0 : n - 1],
                         &next = vPoints[std::min(n + 1, vPoints.size() - 1)];
        const TVector along{next.x - before.x, next.y - before.y};
        const double dLength = Length(along);
        const TVector left = dLength > 0 ? TVector{along.y, -along.x} * (1 / dLength) : TVector();
        const auto adWidth = line.WidthsAt(vPoints[n].t);
        dWidest = std::max({dWidest, adWidth[SIDE_LEFT], adWidth[SIDE_RIGHT]});
        vCentre.push_back(ToPoint(at));
        vLeft.push_back(ToPoint(at + left * adWidth[SIDE_LEFT]));
        vRight.push_back(ToPoint(at - left * adWidth[SIDE_RIGHT]));
    }
    vLines.push_back(std::move(vCentre));
    if (dWidest < LEAST_WIDTH) return;
    vLines.push_back(std::move(vLeft));
    vLines.push_back(std::move(vRight));
}

} // namespace

bool IsSamePreview(const std::vector<TErasedPath>& a, const std::vector<TErasedPath>& b) {
    const auto isSameStretch = [](const TErasedStretch& x, const TErasedStretch& y) {
        return x.stretch == y.stretch;
    };
    return std::ranges::equal(a, b, [&](const TErasedPath& x, const TErasedPath& y) {
        return x.spPath == y.spPath && x.spLine == y.spLine &&
               std::ranges::equal(x.vStretches, y.vStretches, isSameStretch);
    });
}

std::vector<std::vector<CPoint>> GetErasedLines(const std::vector<TErasedPath>& vErased) {
    std::vector<std::vector<CPoint>> vLines;
    for (const TErasedPath& erased : vErased)
        for (const TErasedStretch& stretch : erased.vStretches)
            AddStretch(*erased.spLine, stretch.stretch, vLines);
    return vLines;
}

std::vector<CRect> BoxesOfLines(const std::vector<std::vector<CPoint>>& vLines,
                                const TOverlayMapper& mapper) {
    constexpr int32_t PEN = 2;
    std::vector<CRect> vBoxes;
    for (const auto& vLine : vLines)
        for (size_t nFirst = 0; nFirst < vLine.size(); nFirst += POINTS_OF_BOX) {
            CRect rc;
            for (size_t n = nFirst; n <= std::min(nFirst + POINTS_OF_BOX, vLine.size() - 1); ++n) {
                const CPoint pt = mapper(vLine[n]);
                rc = rc.Union({pt.x - PEN, pt.y - PEN, pt.x + PEN + 1, pt.y + PEN + 1});
            }
            if (vBoxes.size() < MOST_BOXES)
                vBoxes.push_back(rc);
            else
                vBoxes.back() = vBoxes.back().Union(rc);
        }
    return vBoxes;
}
