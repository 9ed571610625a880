#include "core/PathOutline/OutlineCut.h"

#include "core/Base/StableMath.h"
#include "core/PathOutline/OutlineFit.h"
#include "core/PathOutline/WidthProfile.h"

#include <algorithm>
#include <numbers>
#include <tuple>

namespace {

constexpr int SQUARE = 90;   ///< degrees
constexpr int64_t REACH = 3; ///< times the half-width
/// The accuracy of a crossing's fraction: a chord of FindCrossing.
constexpr uint32_t CHORD = BEZIER_T_RESOLUTION / (16 * 50) + 1;

// A position along a side, 16.16 as path parameters are: its point `i` lies at i * BEZIER_T_RESOLUTION.
using TSidePlace = uint64_t;

TSidePlace LastPlace(const TOutlinePoints& vSide) {
    return (vSide.size() - 1) * TSidePlace{BEZIER_T_RESOLUTION};
}

// The first piece in the path's direction that ends behind `t`; null at the path's end.
const TSidePiece* PieceAt(const std::vector<TSidePiece>& vPieces, EPathSide side, uint32_t t) {
    const auto endsBehind = [](uint32_t tAt, const TSidePiece& piece) { return tAt < piece.tEnd; };
    if (side == SIDE_LEFT) {
        const auto it = std::upper_bound(vPieces.begin(), vPieces.end(), t, endsBehind);
        return it == vPieces.end() ? nullptr : &*it;
    }
    const auto it = std::upper_bound(vPieces.rbegin(), vPieces.rend(), t, endsBehind);
    return it == vPieces.rend() ? nullptr : &*it;
}

// The side's own point at `t`: at the same fraction of its half piece, or the start of the next piece where
// one is missing.
TSidePlace OwnPlace(const TSide& source, EPathSide side, uint32_t t) {
    const TSidePiece* pPiece = PieceAt(source.vPieces, side, t);
    if (!pPiece) return side == SIDE_LEFT ? LastPlace(source.vPoints) : 0;
    const uint32_t tIn = std::max(t, pPiece->tBegin) - pPiece->tBegin;
    auto f = static_cast<uint32_t>(MulDiv(tIn, BEZIER_T_RESOLUTION, pPiece->tEnd - pPiece->tBegin));
    if (side == SIDE_RIGHT) f = BEZIER_T_RESOLUTION - f;
    // The piece's three points are two of the side's steps.
    return (pPiece->idxMiddle - 1) * TSidePlace{BEZIER_T_RESOLUTION} + 2 * f;
}

// The path's parameter beside a position of a side, clamped to the side's pieces.
uint32_t ParameterAt(const TSide& source, EPathSide side, TSidePlace place) {
    const auto& vPieces = source.vPieces;
    const auto liesBehind = [](TSidePlace at, const TSidePiece& piece) {
        return at < (piece.idxMiddle + 1) * TSidePlace{BEZIER_T_RESOLUTION};
    };
    const auto it = std::upper_bound(vPieces.begin(), vPieces.end(), place, liesBehind);
    if (it == vPieces.end()) return side == SIDE_LEFT ? vPieces.back().tEnd : vPieces.back().tBegin;
    const TSidePlace first = (it->idxMiddle - 1) * TSidePlace{BEZIER_T_RESOLUTION};
    const auto f = static_cast<uint32_t>((std::max(place, first) - first) / 2);
    const auto tWay = static_cast<uint32_t>(MulDiv(it->tEnd - it->tBegin, f, BEZIER_T_RESOLUTION));
    return side == SIDE_LEFT ? it->tBegin + tWay : it->tEnd - tWay;
}

// Finds the position where a line from a cut meets a side, nearest to the cut.
class CLineSearch {
public:
    CLineSearch(const TOutlinePoints& vSide, const CBezier& line) : m_vSide(vSide), m_line(line) {}

    void Offer(size_t idx) {
        const CBezier segment = SegmentOf(m_vSide[idx], m_vSide[idx + 1]);
        const auto last = FindCrossing(segment, m_line);
        if (!last) return;
        Take(idx, segment, last->uFirst);
        if (CountSides(segment) <= 2) return;
        const auto first = FindCrossing(segment.Reverse(), m_line);
        if (first && BEZIER_T_RESOLUTION - first->uFirst + 2 * CHORD < last->uFirst)
            Take(idx, segment, BEZIER_T_RESOLUTION - first->uFirst);
    }
    bool HasMet() const { return m_nBest >= 0; }
    TSidePlace GetPlace() const { return m_place; }

private:
    // The number of times the control points change sides of the line, plus one: an upper bound of the
    // curve's crossings.
    int CountSides(const CBezier& segment) const {
        int nCount = 0;
        bool bAbove = false;
        for (const CPoint pt : {segment.p0, segment.p1, segment.p2, segment.p3}) {
            const int64_t nAside = Cross(m_line.p3 - m_line.p0, pt - m_line.p0);
            if (nAside == 0 || (nCount > 0 && bAbove == (nAside > 0))) continue;
            bAbove = nAside > 0;
            ++nCount;
        }
        return nCount;
    }
    void Take(size_t idx, const CBezier& segment, uint32_t f) {
        const CPoint ptAway = segment.PointAt(f) - m_line.p0;
        const int64_t nDistance = Dot(ptAway, ptAway);
        if (HasMet() && nDistance >= m_nBest) return;
        m_nBest = nDistance;
        m_place = idx * TSidePlace{BEZIER_T_RESOLUTION} + f;
    }

    const TOutlinePoints& m_vSide;
    const CBezier& m_line;
    int64_t m_nBest = -1;
    TSidePlace m_place = 0;
};

// The cut's direction toward the left side.
CPoint DirectionOf(const TPlacedCut& cut) {
    const TSinCos turn = StableSinCos(-cut.nAngle * (std::numbers::pi / 180));
    return {static_cast<int32_t>(turn.dCos * cut.tangent.x - turn.dSin * cut.tangent.y),
            static_cast<int32_t>(turn.dSin * cut.tangent.x + turn.dCos * cut.tangent.y)};
}

// The position where a cut divides a side. The line is followed only along the stretch of the side within
// its reach: another part of the stroke that comes near must not be cut.
TSidePlace FindPlace(const TSide& source, EPathSide side, const TPlacedCut& cut) {
    const TOutlinePoints& vSide = source.vPoints;
    const TSidePlace own = OwnPlace(source, side, cut.t);
    const int64_t nReach = REACH * cut.auWidth[side];
    const CPoint way = Scale(DirectionOf(cut), side == SIDE_LEFT ? nReach : -nReach);
    if (IsZero(way)) return own;
    const auto isWithin = [&](const TOutlinePoint& point) {
        const CPoint away = point.anchor - cut.position;
        return Dot(away, away) <= nReach * nReach;
    };
    const CBezier line = CBezier::Line(cut.position, CheckedAdd(cut.position, way));
    CLineSearch search(vSide, line);
    const size_t idxOwn = std::min<size_t>(own / BEZIER_T_RESOLUTION, vSide.size() - 2);
    search.Offer(idxOwn);
    for (size_t i = idxOwn; i > 0 && isWithin(vSide[i]); --i) search.Offer(i - 1);
    for (size_t i = idxOwn + 1; i + 1 < vSide.size() && isWithin(vSide[i]); ++i) search.Offer(i);
    if (!search.HasMet()) return own;
    // The remaining ends of the side must not be shorter than a crossing's accuracy.
    if (search.GetPlace() < CHORD) return 0;
    return LastPlace(vSide) - search.GetPlace() < CHORD ? LastPlace(vSide) : search.GetPlace();
}

// The part of a side between two positions.
TOutlinePoints PartOf(const TOutlinePoints& vSide, TSidePlace from, TSidePlace to) {
    const auto split = [&](TSidePlace at, size_t idx) {
        return SegmentOf(vSide[idx], vSide[idx + 1])
            .Split(static_cast<uint32_t>(at - idx * BEZIER_T_RESOLUTION));
    };
    const size_t idxFrom = std::min<size_t>(from / BEZIER_T_RESOLUTION, vSide.size() - 2);
    if (from == to) {
        const TOutlinePoint point{split(from, idxFrom).first.p3, {}, {}};
        return {point, point};
    }
    const size_t idxTo = (to - 1) / BEZIER_T_RESOLUTION;
    CBezier first = split(from, idxFrom).second;
    CBezier last = split(to, idxTo).first;
    if (idxFrom == idxTo) {
        const auto uFrom = static_cast<int64_t>(from - idxFrom * BEZIER_T_RESOLUTION);
        const auto uTo = static_cast<int64_t>(to - idxTo * BEZIER_T_RESOLUTION);
        first = last = last.Split(static_cast<uint32_t>(MulDiv(uFrom, BEZIER_T_RESOLUTION, uTo))).second;
    }
    TOutlinePoints vPart{{first.p0, {}, first.p1 - first.p0}};
    vPart.insert(vPart.end(), vSide.begin() + static_cast<std::ptrdiff_t>(idxFrom) + 1,
                 vSide.begin() + static_cast<std::ptrdiff_t>(idxTo) + 1);
    vPart.push_back({last.p3, last.p2 - last.p3, {}});
    vPart[1].back = first.p2 - first.p3;
    vPart[vPart.size() - 2].fore = last.p1 - last.p0;
    return vPart;
}

} // namespace

std::vector<TOutlineCut> EffectiveCuts(const TOutlineSource& source) {
    std::vector<TOutlineCut> vCuts;
    for (TOutlineCut cut : source.vCuts) {
        cut.t = std::min(cut.t, LastParameter(source.vAnchors));
        if (!vCuts.empty() && vCuts.back().t == cut.t)
            vCuts.pop_back();
        else
            vCuts.push_back(cut);
    }
    return vCuts;
}

std::vector<TPlacedCut> PlaceCuts(const TOutlineSource& source, const CCentreLine& line) {
    const auto& vSegments = line.GetSegments();
    if (vSegments.empty()) return {};
    const CPathLengths lengths(vSegments, line.GetLengths());
    std::vector<TPlacedCut> vCuts;
    for (const TOutlineCut& cut : source.vCuts) {
        const uint32_t t = cut.t;
        const size_t idx = std::min<size_t>(t / BEZIER_T_RESOLUTION, vSegments.size() - 1);
        const uint32_t f = t - static_cast<uint32_t>(idx) * BEZIER_T_RESOLUTION;
        const auto widthOf = [&](EPathSide side) {
            return WidthAt(lengths, source.vWidths, source.uWidth, t, side);
        };
        vCuts.push_back({t,
                         CheckedAdd(source.vAnchors[idx].anchor, vSegments[idx].PointAt(f)),
                         DirectionAt(vSegments[idx], f),
                         cut.nAngle % 360,
                         {widthOf(SIDE_LEFT), widthOf(SIDE_RIGHT)},
                         t,
                         t});
    }
    return vCuts;
}

std::vector<TStretch> CutSides(const TSide& left, const TSide& right, std::vector<TPlacedCut>& vCuts) {
    if (left.vPoints.size() < 2 || right.vPoints.size() < 2) return {{left.vPoints, right.vPoints}};
    std::vector<TStretch> vStretches;
    TSidePlace fromLeft = 0;
    TSidePlace toRight = LastPlace(right.vPoints);
    const auto append = [&](TSidePlace toLeft, TSidePlace fromRight) {
        vStretches.push_back(
            {PartOf(left.vPoints, fromLeft, toLeft), PartOf(right.vPoints, fromRight, toRight)});
        fromLeft = toLeft;
        toRight = fromRight;
    };
    // A slanted cut may reach over the next one; parts already cut off stay so.
    for (TPlacedCut& cut : vCuts) {
        append(std::max(fromLeft, FindPlace(left, SIDE_LEFT, cut)),
               std::min(toRight, FindPlace(right, SIDE_RIGHT, cut)));
        if (cut.nAngle != SQUARE)
            std::tie(cut.tFirst, cut.tLast) = std::minmax(
                {ParameterAt(left, SIDE_LEFT, fromLeft), ParameterAt(right, SIDE_RIGHT, toRight)});
    }
    append(LastPlace(left.vPoints), 0);
    return vStretches;
}

TEndLine LineOf(const TPlacedCut& cut) {
    return EndLine(cut.position, CheckedAdd(cut.position, DirectionOf(cut)), cut.tangent);
}
