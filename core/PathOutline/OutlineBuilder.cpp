#include "core/PathOutline/OutlineBuilder.h"

#include "core/Base/Parallel.h"
#include "core/PathOutline/OutlineCut.h"
#include "core/PathOutline/OutlineFold.h"
#include "core/PathOutline/Wave.h"

#include <algorithm>
#include <utility>

namespace {

/// From here on a second thread saves more time than its start takes.
constexpr size_t PIECES_FOR_THREADS = 100;

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
    // A tip replaces the two points that it connects.
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

// The part of a fold on one side of a cut that goes through it.
void ClipFold(TFold& fold, const TPlacedCut& cut, bool bBehind) {
    TEndLine line = LineOf(cut);
    if (!bBehind) line.inward = {-line.inward.x, -line.inward.y};
    std::vector<CPoint> vPolygon;
    for (const TOutlinePoint& point : fold.vPoints) vPolygon.push_back(point.anchor);
    fold.vPoints.clear();
    for (const CPoint pt : ClipPolygon(vPolygon, line)) fold.vPoints.push_back({pt, {}, {}});
}

// Visits the parts of folds in the visible stretches, with the stretches' numbers. A fold with curves is
// skipped where a cut goes through it.
template <class Visit>
void VisitStretches(const TFold& fold, const std::vector<TPlacedCut>& vCuts, Visit visit) {
    const bool bPlace = fold.tBegin == fold.tEnd;
    const auto itFirst = std::partition_point(vCuts.begin(), vCuts.end(), [&](const TPlacedCut& cut) {
        return cut.tLast < fold.tBegin || (cut.tLast == fold.tBegin && !bPlace);
    });
    const auto itLast = std::partition_point(itFirst, vCuts.end(), [&](const TPlacedCut& cut) {
        return cut.tFirst < fold.tEnd || (cut.tFirst == fold.tEnd && bPlace);
    });
    if (itFirst != itLast && !fold.bStraight) return;
    const auto idxFirst = static_cast<size_t>(itFirst - vCuts.begin());
    const auto idxLast = static_cast<size_t>(itLast - vCuts.begin());
    for (size_t idx = idxFirst; idx <= idxLast; ++idx) {
        if (idx % 2 != 0) continue;
        TFold part = fold;
        if (idx > idxFirst) ClipFold(part, vCuts[idx - 1], true);
        if (idx < idxLast) ClipFold(part, vCuts[idx], false);
        if (!part.vPoints.empty()) visit(idx, part);
    }
}

} // namespace

std::vector<TStretchOutline> COutlineBuilder::Build(const TOutlineSource& given) {
    m_vRibs.clear();
    if (given.vAnchors.empty()) return {};
    const CPoint ptOrigin = given.vAnchors.front().anchor;
    TOutlineSource source = given;
    for (TOutlinePoint& anchor : source.vAnchors)
        anchor.anchor = CheckedAdd(anchor.anchor, {-ptOrigin.x, -ptOrigin.y});
    m_line.SetAnchors(source.vAnchors);
    source.vCuts = EffectiveCuts(source);
    auto vCuts = PlaceCuts(source, m_line);
    source.vWidths = WidthsOrMiddle(source);
    if (source.wave.uWidth != 0 && source.vAnchors.size() > 1)
        source.vWidths = WaveWidths(source, m_line.GetLengths());
    const auto vPieces = m_line.Divide(source.vWidths);
    std::array<TSide, 2> aSides;
    // With another number of a wave's widths nearly all of them are others.
    const bool bOthers = std::exchange(m_nWidths, source.vWidths.size()) != source.vWidths.size();
    const bool bThreads = bOthers && vPieces.size() >= PIECES_FOR_THREADS;
    ForEachIndex(aSides.size(), bThreads ? AvailableThreads() : 1, [&](size_t n) {
        const EPathSide side = n == SIDE_LEFT ? SIDE_LEFT : SIDE_RIGHT;
        aSides[n] = m_aBuilders[n].Build(SideOf(source, m_line, vPieces, side));
    });
    const auto& [left, right] = aSides;
    if (!source.vAlphas.empty()) m_vRibs = BuildRibs(left, right, source.vAlphas);
    for (TOutlineRib& rib : m_vRibs)
        for (CPoint* pPoint : {&rib.left, &rib.right, &rib.centre}) *pPoint = CheckedAdd(*pPoint, ptOrigin);
    const auto vStretches = CutSides(left, right, vCuts);
    const auto close = [&](const TOutlinePoints& vPoints) {
        TPolyBezier vCurve = CloseOutline(vPoints);
        for (CPoint& pt : vCurve) pt = ToPath(CheckedAdd(pt, ptOrigin));
        return vCurve;
    };
    std::vector<std::vector<TPolyBezier>> vFolds(vStretches.size());
    for (const TFold& fold : FindFolds(left, right))
        VisitStretches(fold, vCuts, [&](size_t idx, const TFold& part) {
            if (idx < vFolds.size()) vFolds[idx].push_back(close(part.vPoints));
        });
    std::vector<TStretchOutline> vOutlines;
    for (size_t i = 0; i < vStretches.size(); i += 2) {
        const TOutlinePoints vPoints = JoinSides(vStretches[i], i == 0 ? source.pBegin : nullptr,
                                                 i + 1 == vStretches.size() ? source.pEnd : nullptr);
        if (!vPoints.empty()) vOutlines.push_back({close(vPoints), std::move(vFolds[i])});
    }
    return vOutlines;
}
