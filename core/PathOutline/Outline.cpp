#include "core/PathOutline/Outline.h"

#include "core/PathOutline/OutlineCut.h"
#include "core/PathOutline/OutlineSide.h"
#include "core/PathOutline/Wave.h"

#include <algorithm>

#include <boost/numeric/conversion/cast.hpp>

namespace {

// To the nearest path unit, halves upward.
CPoint ToPath(CPoint pt) {
    constexpr int UNIT_BITS = 4;
    static_assert(OUTLINE_UNIT == 1 << UNIT_BITS);
    const auto round = [](int32_t n) {
        return static_cast<int32_t>((int64_t{n} + OUTLINE_UNIT / 2) >> UNIT_BITS);
    };
    return {round(pt.x), round(pt.y)};
}

// A stretch as one closed chain. `pBegin` and `pEnd` are null at a cut, where the edge is straight.
TOutlinePoints JoinSides(const TStretch& stretch, const IOutlineTerm* pBegin, const IOutlineTerm* pEnd) {
    const TOutlinePoints& vLeft = stretch.vLeft;
    const TOutlinePoints& vRight = stretch.vRight;
    TOutlinePoints vAll = vLeft;
    if (vLeft.size() < 2 || vRight.size() < 2) {
        vAll.insert(vAll.end(), vRight.begin(), vRight.end());
        return vAll;
    }
    // A tip takes the place of the two points that it bridges.
    const auto bridge = [&](const IOutlineTerm* pTerm, const TOutlinePoint& p, const TOutlinePoint& q) {
        const TOutlinePoints vTip = pTerm ? pTerm->BuildTip(p, q) : TOutlinePoints{p, q};
        vAll.insert(vAll.end(), vTip.begin(), vTip.end());
    };
    vAll.assign(vLeft.begin() + 1, vLeft.end() - 1);
    bridge(pEnd, vLeft.back(), vRight.front());
    vAll.insert(vAll.end(), vRight.begin() + 1, vRight.end() - 1);
    bridge(pBegin, vRight.back(), vLeft.front());
    return vAll;
}

// True when no cut and no hidden stretch touches the piece.
bool IsVisible(const TSidePiece& piece, const std::vector<TOutlineCut>& vCuts) {
    const auto itTouching = std::upper_bound(vCuts.begin(), vCuts.end(), piece.tBegin,
                                             [](uint32_t t, const auto& cut) { return t < cut.t; });
    return (itTouching == vCuts.end() || itTouching->t >= piece.tEnd) &&
           (itTouching - vCuts.begin()) % 2 == 0;
}

// The ground that half a piece covers from side to side.
struct TRib {
    TOutlinePoints vPoints;
    bool bFolded;
};

TRib RibOf(const TSidePiece& l, const TSidePiece& r, size_t n) {
    return {{{l.aPoints[n].anchor, {}, l.aPoints[n].fore},
             {l.aPoints[n + 1].anchor, l.aPoints[n + 1].back, {}},
             {r.aPoints[1 - n].anchor, {}, r.aPoints[1 - n].fore},
             {r.aPoints[2 - n].anchor, r.aPoints[2 - n].back, {}}},
            l.abFolded[n] || r.abFolded[1 - n]};
}

// Where a stroke is wider than its bend, its inner side turns inside out and takes away what lies under it.
// There, and on either side, ribs become outlines of their own.
void AppendFolds(const TSide& left, const TSide& right, const std::vector<TOutlineCut>& vCuts,
                 std::vector<TPolyBezier>& vOutlines) {
    std::vector<TRib> vRibs;
    auto itRight = right.vPieces.rbegin();
    for (const TSidePiece& l : left.vPieces) {
        while (itRight != right.vPieces.rend() && itRight->tBegin < l.tBegin) ++itRight;
        if (itRight == right.vPieces.rend()) break;
        if (itRight->tBegin != l.tBegin || itRight->tEnd != l.tEnd || !IsVisible(l, vCuts)) continue;
        for (const size_t n : {0u, 1u}) vRibs.push_back(RibOf(l, *itRight, n));
    }
    const auto isFolded = [&](size_t i) { return i < vRibs.size() && vRibs[i].bFolded; };
    for (size_t i = 0; i < vRibs.size(); ++i)
        if (isFolded(i) || isFolded(i + 1) || isFolded(i - 1))
            vOutlines.push_back(CloseOutline(vRibs[i].vPoints));
}

} // namespace

std::vector<TPolyBezier> BuildOutline(const TOutlineSource& given) {
    if (given.vAnchors.empty()) return {};
    const CPoint ptOrigin = given.vAnchors.front().anchor;
    // Curves round toward zero: seen from its own start a path has the same outline wherever it lies.
    TOutlineSource source = given;
    for (TOutlinePoint& anchor : source.vAnchors)
        anchor.anchor = CheckedAdd(anchor.anchor, {-ptOrigin.x, -ptOrigin.y});
    source.vCuts = EffectiveCuts(source);
    const auto vCuts = PlaceCuts(source);
    if (source.vWidths.empty())
        source.vWidths.push_back({LastParameter(source.vAnchors) / 2, {source.uWidth, source.uWidth}});
    if (source.wave.uWidth != 0 && source.vAnchors.size() > 1) source.vWidths = WaveWidths(source);
    const TSide left = BuildSide(SideOf(source, SIDE_LEFT));
    const TSide right = BuildSide(SideOf(source, SIDE_RIGHT));
    const auto vStretches = CutSides(left, right, vCuts);
    std::vector<TPolyBezier> vOutlines;
    for (size_t i = 0; i < vStretches.size(); i += 2) {
        const TOutlinePoints vPoints = JoinSides(vStretches[i], i == 0 ? source.pBegin : nullptr,
                                                 i + 1 == vStretches.size() ? source.pEnd : nullptr);
        if (!vPoints.empty()) vOutlines.push_back(CloseOutline(vPoints));
    }
    AppendFolds(left, right, source.vCuts, vOutlines);
    for (TPolyBezier& vCurve : vOutlines)
        for (CPoint& pt : vCurve) pt = ToPath(CheckedAdd(pt, ptOrigin));
    return vOutlines;
}

CPoint ToOutline(CPoint pt) {
    return {boost::numeric_cast<int32_t>(int64_t{pt.x} * OUTLINE_UNIT),
            boost::numeric_cast<int32_t>(int64_t{pt.y} * OUTLINE_UNIT)};
}

uint32_t ToOutline(uint32_t uWidth) {
    return static_cast<uint32_t>(boost::numeric_cast<int32_t>(int64_t{uWidth} * OUTLINE_UNIT));
}

TPolyBezier CloseOutline(const TOutlinePoints& vPoints) {
    TPolyBezier vCurve{vPoints.front().anchor};
    const auto append = [&](const TOutlinePoint& from, const TOutlinePoint& to) {
        const CBezier segment = SegmentOf(from, to);
        vCurve.insert(vCurve.end(), {segment.p1, segment.p2, segment.p3});
    };
    for (size_t i = 1; i < vPoints.size(); ++i) append(vPoints[i - 1], vPoints[i]);
    if (vCurve.back() != vCurve.front()) append(vPoints.back(), vPoints.front());
    return vCurve;
}
