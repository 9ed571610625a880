#include "core/PathOutline/OutlineSide.h"

#include "core/Base/Failure.h"
#include "core/PathOutline/OutlineFit.h"
#include "core/PathOutline/WidthProfile.h"

#include <algorithm>

namespace {

constexpr uint32_t SAME_PLACE = 10 * OUTLINE_UNIT; ///< ends of pieces closer than this are one point
constexpr uint32_t SHORTEST_HANDLE = 4 * OUTLINE_UNIT;

// A stretch of the centre line between two places where a segment or a width span ends, and its half-widths.
struct TPiece {
    CBezier bez;
    CBezier width;
    uint32_t tBegin;
    uint32_t tEnd;
};

// Iterates over anchors and width points together, piece by piece.
class CPieceWalk {
public:
    explicit CPieceWalk(const TSideSource& source)
        : m_source(source), m_vSegments(SegmentsOf(source.vAnchors)), m_lengths(m_vSegments),
          m_tLast(LastParameter(source.vAnchors)), m_tNextWidthAt(source.vWidths.front().first),
          m_bezRest(m_vSegments.front()),
          m_widthCurve(source.pStart->WidthCurve(m_lengths.Between(0, m_tNextWidthAt),
                                                 static_cast<int32_t>(source.vWidths.front().second),
                                                 source.side)) {}

    bool IsDone() const { return m_idxSegment == m_vSegments.size(); }
    uint32_t GetLast() const { return m_tLast; }

    TPiece Next() {
        const uint32_t tNextCtlAt = m_tNextCtlAt;
        TPiece piece{{}, {}, m_tNowBeginAt, std::min(tNextCtlAt, m_tNextWidthAt)};
        piece.bez = tNextCtlAt > m_tNextWidthAt ? CutSegment() : TakeSegment();
        if (m_tNextWidthAt > tNextCtlAt) {
            // At the piece's own length: dividing by parameters would give wrong slopes to segments of
            // uneven length.
            const CPoint ptEnd =
                CheckedAdd(m_widthCurve.p0, {m_lengths.Between(m_tNowBeginAt, piece.tEnd), 0});
            const auto [head, tail] = m_widthCurve.Split(FractionAt(m_widthCurve, ptEnd.x));
            piece.width = head;
            m_widthCurve = tail;
        } else {
            piece.width = m_widthCurve;
            PrepareWidth(piece.tEnd);
        }
        m_tNowBeginAt = piece.tEnd;
        return piece;
    }

private:
    // The part of the segment up to the next width point.
    CBezier CutSegment() {
        const uint32_t nowBeginAt = m_tNowBeginAt;
        const uint32_t tNextCtlAt = m_tNextCtlAt;
        const uint32_t tNextWidthAt = m_tNextWidthAt;
        SELF_CHECK(defect_logic, tNextCtlAt % BEZIER_T_RESOLUTION == 0);
        SELF_CHECK(defect_logic, tNextWidthAt < tNextCtlAt);
        SELF_CHECK(defect_logic, nowBeginAt <= tNextWidthAt);
        SELF_CHECK(defect_logic, tNextCtlAt - BEZIER_T_RESOLUTION <= nowBeginAt);
        const CBezier& segment = m_vSegments[m_idxSegment];
        const uint32_t fBegin = nowBeginAt % BEZIER_T_RESOLUTION;
        const uint32_t fEnd = tNextWidthAt % BEZIER_T_RESOLUTION;
        const auto [head, tail] = segment.Split(fEnd);
        m_bezRest = tail;
        const uint32_t fInHead =
            fEnd == 0 ? fBegin : static_cast<uint32_t>(MulDiv(fBegin, BEZIER_T_RESOLUTION, fEnd));
        CBezier piece = head.Split(fInHead).second;
        piece.p0 = segment.PointAt(fBegin); // the end of the piece before, independent of rounding
        return piece;
    }

    // The rest of the segment.
    CBezier TakeSegment() {
        const CBezier piece = m_bezRest;
        if (++m_idxSegment < m_vSegments.size()) {
            m_bezRest = m_vSegments[m_idxSegment];
            m_tNextCtlAt += BEZIER_T_RESOLUTION;
        }
        return piece;
    }

    // The width curve from `tFrom`, a width point or the start, to the next one or the path's end.
    void PrepareWidth(uint32_t tFrom) {
        const auto& vWidths = m_source.vWidths;
        while (m_idxWidth < vWidths.size() && vWidths[m_idxWidth].first <= tFrom) ++m_idxWidth;
        const CPoint ptFrom = m_widthCurve.p3;
        if (m_idxWidth < vWidths.size()) {
            m_tNextWidthAt = vWidths[m_idxWidth].first;
            m_widthCurve = EaseWidth(ptFrom, m_lengths.Between(tFrom, m_tNextWidthAt),
                                     static_cast<int32_t>(vWidths[m_idxWidth].second));
            return;
        }
        const auto nLength = m_lengths.Between(tFrom, m_tLast);
        const CBezier end = m_source.pEnd->WidthCurve(nLength, ptFrom.y, m_source.side);
        const int32_t nEnd = CheckedAdd(ptFrom, {nLength, 0}).x;
        const auto mirrored = [&](CPoint pt) { return CPoint{nEnd - pt.x, pt.y}; };
        m_widthCurve = {mirrored(end.p3), mirrored(end.p2), mirrored(end.p1), mirrored(end.p0)};
        m_tNextWidthAt = m_tLast;
    }

    const TSideSource& m_source;
    std::vector<CBezier> m_vSegments;
    CPathLengths m_lengths;
    uint32_t m_tLast;
    size_t m_idxSegment = 0;
    size_t m_idxWidth = 0; ///< the first width point that may lie ahead
    uint32_t m_tNowBeginAt = 0;
    uint32_t m_tNextCtlAt = BEZIER_T_RESOLUTION;
    uint32_t m_tNextWidthAt;
    CBezier m_bezRest;
    CBezier m_widthCurve;
};

// A stroke of a single position: two points beside it, one for each side.
TOutlinePoints BuildDot(const TSideSource& source) {
    const TOutlinePoint& anchor = source.vAnchors.front();
    const CPoint H = LengthDown(anchor.fore) < SHORTEST_HANDLE ? CPoint{0, 1} : anchor.fore;
    const CPoint handle = Scale(H, source.vWidths.front().second);
    return {{CheckedAdd(anchor.anchor, Rot90(handle)), {-handle.x, -handle.y}, handle}};
}

// True when the vector between two points runs against the side's direction at one of them.
bool RunsAgainst(const TOutlinePoint& a, const TOutlinePoint& b) {
    const CPoint way = b.anchor - a.anchor;
    return Dot(way, a.fore) <= 0 || Dot(way, b.back) >= 0;
}

// A side's outermost point as moved by the end, and the line of the cut if it was moved. `piece` leads away
// from the end.
TOutlinePoint AdjustedEnd(const IOutlineTerm& term, const TOutlinePoint& plain, const CBezier& piece,
                          std::optional<TEndLine>& line) {
    TOutlinePoint point = plain;
    term.AdjustEnd(point, piece);
    if (point.anchor != plain.anchor) line = EndLine(piece.p0, point.anchor, DirectionAt(piece, 0));
    return point;
}

// Appends a piece's three points to the side. Where it begins at an anchor the centre line may have a corner;
// `t` is its place along the path.
void Append(TSide& side, TOutlinePoint a, TOutlinePoint m, const TOutlinePoint& b, bool bAtAnchor,
            uint32_t t) {
    TOutlinePoints& vSide = side.vPoints;
    if (vSide.empty()) {
        vSide = {a, m, b};
        return;
    }
    if (bAtAnchor) {
        const TOutlinePoint last = vSide.back();
        vSide.pop_back();
        const TOutlinePoints vCorner = JoinCorner(vSide.back(), last, a, m);
        vSide.insert(vSide.end(), vCorner.begin(), vCorner.end());
        const bool bMoves = LengthDown(a.anchor - last.anchor) >= OUTLINE_UNIT;
        if (vCorner.size() > 1 && bMoves) side.vCorners.push_back({t, t, vCorner});
    } else if (LengthDown(vSide.back().anchor - a.anchor) < SAME_PLACE) {
        vSide.back().fore = a.fore;
    } else {
        vSide.push_back(a);
    }
    vSide.push_back(m);
    vSide.push_back(b);
}

} // namespace

TSideSource SideOf(const TOutlineSource& source, EPathSide side) {
    TSideSource result{source.vAnchors, {}, source.pBegin, source.pEnd, side};
    for (const TOutlineWidth& width : source.vWidths)
        result.vWidths.emplace_back(width.t, width.auWidth[side]);
    if (side == SIDE_LEFT) return result;
    const uint32_t tLast = LastParameter(source.vAnchors);
    std::reverse(result.vAnchors.begin(), result.vAnchors.end());
    for (TOutlinePoint& anchor : result.vAnchors) std::swap(anchor.back, anchor.fore);
    std::reverse(result.vWidths.begin(), result.vWidths.end());
    for (auto& [t, uWidth] : result.vWidths) t = tLast - t;
    std::swap(result.pStart, result.pEnd);
    return result;
}

TSide BuildSide(const TSideSource& source) {
    TSide side;
    if (source.vAnchors.size() < 2) return {BuildDot(source), {}, {}, {}, {}};
    CPieceWalk walk(source);
    // Corners of slanted ends that lie behind the middle of their piece: the side would turn back to it.
    std::optional<TOutlinePoint> trimStart, trimEnd;
    while (!walk.IsDone()) {
        const TPiece piece = walk.Next();
        if (piece.bez.IsDegenerate()) continue;
        auto a = OffsetPoint(piece.bez, piece.width, 0);
        auto m = OffsetPoint(piece.bez, piece.width, BEZIER_T_RESOLUTION / 2);
        auto b = OffsetPoint(piece.bez, piece.width, BEZIER_T_RESOLUTION);
        if (!a || !m || !b) continue;
        // A slanted end moves its corners, which creates no fold.
        const std::array aptPlain{a->anchor, m->anchor, b->anchor};
        const std::array abFolded{RunsAgainst(*a, *m), RunsAgainst(*m, *b)};
        if (piece.tBegin == 0) {
            const TOutlinePoint corner = AdjustedEnd(*source.pStart, *a, piece.bez, side.startLine);
            if (side.startLine && !side.startLine->IsInside(a->anchor) && RunsAgainst(corner, *m))
                trimStart = corner;
            else
                *a = corner;
        } else if (piece.tEnd == walk.GetLast()) {
            const TOutlinePoint corner = AdjustedEnd(*source.pEnd, *b, piece.bez.Reverse(), side.endLine);
            if (side.endLine && !side.endLine->IsInside(b->anchor) && RunsAgainst(*m, corner))
                trimEnd = corner;
            else
                *b = corner;
        }
        const auto [bezHead, bezTail] = piece.bez.Split(BEZIER_T_RESOLUTION / 2);
        const auto [widthHead, widthTail] = piece.width.Split(BEZIER_T_RESOLUTION / 2);
        FitHandles(*a, *m, bezHead, widthHead);
        FitHandles(*m, *b, bezTail, widthTail);
        a->back = b->fore = {};
        const auto alongPath = [&](uint32_t t) { return source.side == SIDE_LEFT ? t : walk.GetLast() - t; };
        Append(side, *a, *m, *b, piece.tBegin % BEZIER_T_RESOLUTION == 0, alongPath(piece.tBegin));
        const auto [tBegin, tEnd] = std::minmax({alongPath(piece.tBegin), alongPath(piece.tEnd)});
        side.vPieces.push_back({tBegin,
                                tEnd,
                                piece.bez,
                                piece.width,
                                {*a, *m, *b},
                                side.vPoints.size() - 2,
                                aptPlain,
                                abFolded});
    }
    if (side.vPoints.empty()) side.vPoints = BuildDot(source);
    if (trimStart) TrimStart(side.vPoints, *side.startLine, *trimStart);
    if (trimEnd) TrimEnd(side.vPoints, *side.endLine, *trimEnd);
    return side;
}
