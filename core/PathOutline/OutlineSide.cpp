#include "core/PathOutline/OutlineSide.h"

#include <algorithm>

namespace {

constexpr uint32_t SHORTEST_HANDLE = 4 * OUTLINE_UNIT;

TOutlinePoint Moved(const TOutlinePoint& point, CPoint way) {
    return {CheckedAdd(point.anchor, way), point.back, point.fore};
}

CPoint Negated(CPoint pt) { return {-pt.x, -pt.y}; }

// A stroke of a single position: two points beside it, one for each side.
TOutlinePoints BuildDot(const TSideSource& source) {
    const TOutlinePoint& anchor = source.first;
    const CPoint H = LengthDown(anchor.fore) < SHORTEST_HANDLE ? CPoint{0, 1} : anchor.fore;
    const CPoint handle = Scale(H, source.vWidths.front().second);
    return {{CheckedAdd(anchor.anchor, Rot90(handle)), Negated(handle), handle}};
}

} // namespace

TOutlinePoint TSidePiece::GetPoint(size_t n) const { return Moved(pPiece->aPoints[n], ptOrigin); }

TSideSource SideOf(const TOutlineSource& source, const CCentreLine& line,
                   const std::vector<TCentrePiece>& vPieces, EPathSide side) {
    TSideSource result{{}, {}, {}, source.pBegin, source.pEnd, source.vAnchors.front(), side};
    for (const TOutlineWidth& width : source.vWidths)
        result.vWidths.emplace_back(width.t, width.auWidth[side]);
    const auto& vSegments = line.GetSegments();
    if (side == SIDE_LEFT) {
        for (size_t i = 0; i < vSegments.size(); ++i)
            result.vSegments.push_back({source.vAnchors[i].anchor, vSegments[i]});
        result.vPieces = vPieces;
        return result;
    }
    const uint32_t tLast = LastParameter(source.vAnchors);
    for (size_t i = vSegments.size(); i-- > 0;) {
        const auto fromEnd = [&](CPoint pt) { return CheckedAdd(pt, Negated(vSegments[i].p3)); };
        const auto [p0, p1, p2, p3] = vSegments[i];
        result.vSegments.push_back(
            {source.vAnchors[i + 1].anchor, {{}, fromEnd(p2), fromEnd(p1), fromEnd(p0)}});
    }
    for (size_t i = vPieces.size(); i-- > 0;)
        result.vPieces.push_back({tLast - (i == 0 ? 0 : vPieces[i - 1].tEnd), vPieces[i].uLength});
    std::reverse(result.vWidths.begin(), result.vWidths.end());
    for (auto& [t, uWidth] : result.vWidths) t = tLast - t;
    std::swap(result.pStart, result.pEnd);
    result.first = source.vAnchors.back();
    std::swap(result.first.back, result.first.fore);
    return result;
}

const TSideRun& CSideBuilder::RunOf(size_t idx, const TRunSource& source, TSideEnd* pStart, TSideEnd* pEnd) {
    const auto isSame = [&](const TSideRun& run) {
        return !pStart && !pEnd && !run.bEnd && run.bez == source.bez &&
               std::equal(run.vParts.begin(), run.vParts.end(), source.parts.begin(), source.parts.end());
    };
    return m_memoRun.Get(idx, isSame, [&] { return BuildRun(source, pStart, pEnd); });
}

const TCorner& CSideBuilder::CornerOf(size_t idx, const CBezier& before, const CBezier& behind) {
    const auto isSame = [&](const TKnownCorner& known) {
        return known.before == before && known.behind == behind;
    };
    const auto make = [&] { return TKnownCorner{before, behind, JoinCorner(before, behind)}; };
    return m_memoCorner.Get(idx, isSame, make).corner;
}

// The centre line may have a corner at an anchor, at which a run begins.
void CSideBuilder::Append(TSide& side, const TSideSource& source, size_t idx, const TSideRun& run) {
    if (run.vPieces.empty()) return;
    const auto tLast = static_cast<uint32_t>(source.vSegments.size()) * BEZIER_T_RESOLUTION;
    const auto tBegin = static_cast<uint32_t>(idx) * BEZIER_T_RESOLUTION;
    const auto alongPath = [&](uint32_t t) { return source.side == SIDE_LEFT ? t : tLast - t; };
    const CPoint ptOrigin = source.vSegments[idx].ptOrigin;
    TOutlinePoints& vSide = side.vPoints;
    const TOutlinePoint first = Moved(run.vPoints.front(), ptOrigin);
    CPoint back = run.vPoints[1].back;
    if (!vSide.empty() && run.vPieces.front().fBegin == 0) {
        const TOutlinePoint last = vSide.back();
        vSide.pop_back();
        const TCorner& corner =
            CornerOf(idx, SegmentOf(Moved(vSide.back(), Negated(ptOrigin)), Moved(last, Negated(ptOrigin))),
                     SegmentOf(run.vPoints[0], run.vPoints[1]));
        vSide.back().fore = corner.fore;
        for (const TOutlinePoint& point : corner.vPoints) vSide.push_back(Moved(point, ptOrigin));
        back = corner.back;
        const bool bMoves = LengthDown(first.anchor - last.anchor) >= OUTLINE_UNIT;
        if (corner.vPoints.size() > 1 && bMoves)
            side.vCorners.push_back(
                {alongPath(tBegin),
                 alongPath(tBegin),
                 {vSide.end() - static_cast<std::ptrdiff_t>(corner.vPoints.size()), vSide.end()}});
    } else if (!vSide.empty() && IsSamePlace(vSide.back(), first)) {
        vSide.back().fore = first.fore;
    } else {
        vSide.push_back(first);
    }
    const size_t idxFirst = vSide.size() - 1; // of the run's first point
    for (size_t i = 1; i < run.vPoints.size(); ++i) vSide.push_back(Moved(run.vPoints[i], ptOrigin));
    vSide[idxFirst + 1].back = back;
    for (const TRunPiece& piece : run.vPieces) {
        const auto [t, tEnd] =
            std::minmax({alongPath(tBegin + piece.fBegin), alongPath(tBegin + piece.fEnd)});
        side.vPieces.push_back({t, tEnd, idxFirst + piece.idxMiddle, ptOrigin, &piece});
    }
}

TSide CSideBuilder::Build(const TSideSource& source) {
    const size_t nSegments = source.vSegments.size();
    m_memoRun.Begin(nSegments);
    m_memoCorner.Begin(nSegments);
    TSide side;
    if (nSegments == 0) {
        side.vPoints = BuildDot(source);
        return side;
    }
    const auto vParts = WidthParts(source.vPieces, source.vWidths, *source.pStart, *source.pEnd, source.side);
    TSideEnd start{source.pStart, {}, {}}, end{source.pEnd, {}, {}};
    side.vPoints.reserve(vParts.size() * 3);
    side.vPieces.reserve(vParts.size());
    auto itParts = vParts.begin();
    for (size_t i = 0; i < nSegments; ++i) {
        auto itNext = itParts;
        while (itNext++->fEnd != BEZIER_T_RESOLUTION) {
        }
        const TRunSource run{source.vSegments[i].bez, {itParts, itNext}};
        itParts = itNext;
        Append(side, source, i,
               RunOf(i, run, i == 0 ? &start : nullptr, i + 1 == nSegments ? &end : nullptr));
    }
    if (side.vPoints.empty()) side.vPoints = BuildDot(source);
    const auto place = [](std::optional<TEndLine>& line, const TSideEnd& from, CPoint ptOrigin) {
        line = from.line;
        if (line) line->position = CheckedAdd(line->position, ptOrigin);
    };
    const CPoint ptFirst = source.vSegments.front().ptOrigin;
    const CPoint ptLast = source.vSegments.back().ptOrigin;
    place(side.startLine, start, ptFirst);
    place(side.endLine, end, ptLast);
    if (start.trim) TrimStart(side.vPoints, *side.startLine, Moved(*start.trim, ptFirst));
    if (end.trim) TrimEnd(side.vPoints, *side.endLine, Moved(*end.trim, ptLast));
    return side;
}
