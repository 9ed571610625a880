#include "core/PathOutline/OutlineRun.h"

#include "core/PathOutline/OutlineFit.h"

namespace {

constexpr uint32_t HALF = BEZIER_T_RESOLUTION / 2;

// The pieces of a segment, one after the other.
class CSegmentCut {
public:
    explicit CSegmentCut(const CBezier& segment) : m_segment(segment), m_bezRest(segment) {}

    CBezier Next(uint32_t fEnd) {
        const uint32_t fBegin = std::exchange(m_fNow, fEnd);
        if (fEnd == BEZIER_T_RESOLUTION) return m_bezRest;
        const auto [head, tail] = m_segment.Split(fEnd);
        m_bezRest = tail;
        CBezier piece = head.Split(static_cast<uint32_t>(MulDiv(fBegin, BEZIER_T_RESOLUTION, fEnd))).second;
        piece.p0 = m_segment.PointAt(fBegin); // the end of the piece before, independent of rounding
        return piece;
    }

private:
    const CBezier& m_segment;
    CBezier m_bezRest;
    uint32_t m_fNow = 0;
};

// True when the vector between two points runs against the side's direction at one of them.
bool RunsAgainst(const TOutlinePoint& a, const TOutlinePoint& b) {
    const CPoint way = b.anchor - a.anchor;
    return Dot(way, a.fore) <= 0 || Dot(way, b.back) >= 0;
}

// Moves a side's outermost point, `piece` leads away from the end. `runsBack` says of the moved point whether
// the side would turn back to it.
template <class RunsBack>
void AdjustEnd(TSideEnd& end, TOutlinePoint& point, const CBezier& piece, RunsBack runsBack) {
    TOutlinePoint corner = point;
    end.pTerm->AdjustEnd(corner, piece);
    if (corner.anchor != point.anchor) end.line = EndLine(piece.p0, corner.anchor, DirectionAt(piece, 0));
    if (end.line && !end.line->IsInside(point.anchor) && runsBack(corner))
        end.trim = corner;
    else
        point = corner;
}

// Appends a piece's three points to the run.
void Append(TOutlinePoints& vPoints, const std::array<TOutlinePoint, 3>& aPoints) {
    if (!vPoints.empty() && IsSamePlace(vPoints.back(), aPoints[0]))
        vPoints.back().fore = aPoints[0].fore;
    else
        vPoints.push_back(aPoints[0]);
    vPoints.push_back(aPoints[1]);
    vPoints.push_back(aPoints[2]);
}

} // namespace

bool IsSamePlace(const TOutlinePoint& a, const TOutlinePoint& b) {
    constexpr uint32_t SAME_PLACE = 10 * OUTLINE_UNIT;
    return LengthDown(a.anchor - b.anchor) < SAME_PLACE;
}

TSideRun BuildRun(const TRunSource& source, TSideEnd* pStart, TSideEnd* pEnd) {
    TSideRun run{source.bez, {source.parts.begin(), source.parts.end()}, pStart || pEnd, {}, {}};
    run.vPieces.reserve(source.parts.size());
    run.vPoints.reserve(source.parts.size() * 3);
    CSegmentCut cut(source.bez);
    uint32_t fNext = 0;
    for (const auto& [fEnd, width] : source.parts) {
        const CBezier bez = cut.Next(fEnd);
        const uint32_t fBegin = std::exchange(fNext, fEnd);
        if (bez.IsDegenerate()) continue;
        auto a = OffsetPoint(bez, width, 0);
        auto m = OffsetPoint(bez, width, HALF);
        auto b = OffsetPoint(bez, width, BEZIER_T_RESOLUTION);
        if (!a || !m || !b) continue;
        // A slanted end moves its corners, which creates no fold.
        const std::array aptPlain{a->anchor, m->anchor, b->anchor};
        const std::array abFolded{RunsAgainst(*a, *m), RunsAgainst(*m, *b)};
        if (pStart && fBegin == 0)
            AdjustEnd(*pStart, *a, bez, [&](const auto& corner) { return RunsAgainst(corner, *m); });
        else if (pEnd && fEnd == BEZIER_T_RESOLUTION)
            AdjustEnd(*pEnd, *b, bez.Reverse(), [&](const auto& corner) { return RunsAgainst(*m, corner); });
        const auto [bezHead, bezTail] = bez.Split(HALF);
        const auto [widthHead, widthTail] = width.Split(HALF);
        FitHandles(*a, *m, bezHead, widthHead);
        FitHandles(*m, *b, bezTail, widthTail);
        a->back = b->fore = {};
        const std::array aPoints{*a, *m, *b};
        Append(run.vPoints, aPoints);
        run.vPieces.push_back(
            {fBegin, fEnd, bez, width, aPoints, run.vPoints.size() - 2, aptPlain, abFolded});
    }
    return run;
}
