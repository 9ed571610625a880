#include "core/PathOutline/OutlineFold.h"

#include "core/PathOutline/OutlineFit.h"

#include <algorithm>

namespace {

// The entries of both sides at the same position, in the path's direction.
template <class TEntries, class Visit>
void VisitPairs(const TEntries& vLeft, const TEntries& vRight, Visit visit) {
    auto itRight = vRight.rbegin();
    for (const auto& l : vLeft) {
        while (itRight != vRight.rend() && itRight->tBegin < l.tBegin) ++itRight;
        if (itRight == vRight.rend()) break;
        if (itRight->tBegin == l.tBegin && itRight->tEnd == l.tEnd) visit(l, *itRight);
    }
}

// Half a piece, by its number on the left side.
TFold HalfOf(const TSidePiece& l, const TSidePiece& r, size_t n) {
    const std::array aPoints{l.GetPoint(n), l.GetPoint(n + 1), r.GetPoint(1 - n), r.GetPoint(2 - n)};
    return {l.tBegin,
            l.tEnd,
            {{aPoints[0].anchor, {}, aPoints[0].fore},
             {aPoints[1].anchor, aPoints[1].back, {}},
             {aPoints[2].anchor, {}, aPoints[2].fore},
             {aPoints[3].anchor, aPoints[3].back, {}}},
            false};
}

// True when the lines from `a` to `b` and from `c` to `d` cross; false where they only touch, as at a sharp
// end.
bool DoCross(CPoint a, CPoint b, CPoint c, CPoint d) {
    const auto sideOf = [](CPoint from, CPoint to, CPoint pt) {
        const int64_t n = Cross(to - from, pt - from);
        return (n > 0) - (n < 0);
    };
    return sideOf(a, b, c) * sideOf(a, b, d) < 0 && sideOf(c, d, a) * sideOf(c, d, b) < 0;
}

// True when the lines across the stroke at both ends of the half meet, or a side leads backwards.
bool IsFolded(const TSidePiece& l, const TSidePiece& r, size_t n) {
    return l.pPiece->abFolded[n] || r.pPiece->abFolded[1 - n] ||
           DoCross(l.GetPlain(n), r.GetPlain(2 - n), l.GetPlain(n + 1), r.GetPlain(1 - n));
}

// Half a piece with the same half of the other side, by its number on the left one.
struct THalf {
    const TSidePiece& l;
    const TSidePiece& r;
    size_t n;
    bool bFolded;
    std::vector<TEndLine> vLines; ///< of slanted ends that reach over it,
    bool bReached;                ///< and over a fold
};

// The side's place beside a fraction of the piece.
std::optional<CPoint> PlaceOf(const TSidePiece& piece, uint32_t f) {
    const auto point = OffsetPoint(piece.pPiece->bez, piece.pPiece->width, f);
    if (!point) return {};
    return CheckedAdd(point->anchor, piece.ptOrigin);
}

// The half in narrow strips: where a side runs backwards no curve is fitted to it, so the half alone would
// miss area between its ends.
void AppendStrips(const THalf& half, std::vector<TFold>& vFolds) {
    constexpr uint32_t STRIPS = 8;
    const auto& [l, r, n, bFolded, vLines, bReached] = half;
    std::array<CPoint, 2> aptBefore{l.GetPlain(n), r.GetPlain(2 - n)};
    uint32_t tBefore = n == 0 ? l.tBegin : l.tBegin + (l.tEnd - l.tBegin) / 2;
    for (uint32_t u = 1; u <= STRIPS; ++u) {
        const uint32_t f = (static_cast<uint32_t>(n) * STRIPS + u) * (BEZIER_T_RESOLUTION / 2 / STRIPS);
        const uint32_t t =
            l.tBegin + static_cast<uint32_t>(MulDiv(l.tEnd - l.tBegin, f, BEZIER_T_RESOLUTION));
        const auto left = PlaceOf(l, f);
        const auto right = PlaceOf(r, BEZIER_T_RESOLUTION - f);
        if (!left || !right) continue;
        std::vector<CPoint> vStrip{aptBefore[SIDE_LEFT], *left, *right, aptBefore[SIDE_RIGHT]};
        for (const TEndLine& line : vLines) vStrip = ClipPolygon(vStrip, line);
        TFold fold{tBefore, t, {}, true};
        for (const CPoint pt : vStrip) fold.vPoints.push_back({pt, {}, {}});
        if (!vStrip.empty()) vFolds.push_back(std::move(fold));
        aptBefore = {*left, *right};
        tBefore = t;
    }
}

// A slanted end covers all halves up to the first one, searched from the end, whose far edge lies inside
// its line.
template <class Iterator>
void MarkReach(Iterator itBegin, Iterator itEnd, size_t nFar, const TEndLine& line) {
    const auto isClear = [&](const THalf& half) {
        return line.IsInside(half.l.GetPlain(half.n + nFar)) &&
               line.IsInside(half.r.GetPlain(2 - half.n - nFar));
    };
    auto itLast = std::find_if(itBegin, itEnd, isClear);
    if (itLast != itEnd) ++itLast;
    const bool bFolds = std::any_of(itBegin, itLast, [](const THalf& half) { return half.bFolded; });
    for (auto it = itBegin; it != itLast; ++it) {
        it->vLines.push_back(line);
        it->bReached |= bFolds;
    }
}

TFold CornerOf(const TSideCorner& l, const TSideCorner& r) {
    TFold fold{l.tBegin, l.tEnd, l.vPoints, true};
    fold.vPoints.insert(fold.vPoints.end(), r.vPoints.begin(), r.vPoints.end());
    fold.vPoints[0].back = fold.vPoints[l.vPoints.size()].back = {};
    fold.vPoints[l.vPoints.size() - 1].fore = fold.vPoints.back().fore = {};
    return fold;
}

} // namespace

std::vector<TFold> FindFolds(const TSide& left, const TSide& right) {
    std::vector<THalf> vHalves;
    vHalves.reserve(2 * left.vPieces.size());
    VisitPairs(left.vPieces, right.vPieces, [&](const TSidePiece& l, const TSidePiece& r) {
        for (const size_t n : {0u, 1u}) vHalves.push_back({l, r, n, IsFolded(l, r, n), {}, false});
    });
    if (const auto& line = left.startLine ? left.startLine : right.endLine; line)
        MarkReach(vHalves.begin(), vHalves.end(), 1, *line);
    if (const auto& line = left.endLine ? left.endLine : right.startLine; line)
        MarkReach(vHalves.rbegin(), vHalves.rend(), 0, *line);
    std::vector<TFold> vFolds;
    const auto isFolded = [&](size_t i) { return i < vHalves.size() && vHalves[i].bFolded; };
    for (size_t i = 0; i < vHalves.size(); ++i) {
        const THalf& half = vHalves[i];
        if (half.bFolded && half.vLines.empty()) vFolds.push_back(HalfOf(half.l, half.r, half.n));
        // Between a fold and a slightly different fitted curve beside it there would be a gap.
        if (half.bFolded || isFolded(i + 1) || isFolded(i - 1) || half.bReached) AppendStrips(half, vFolds);
    }
    VisitPairs(left.vCorners, right.vCorners,
               [&](const TSideCorner& l, const TSideCorner& r) { vFolds.push_back(CornerOf(l, r)); });
    return vFolds;
}
