// Half-widths along a stroke: curves of width over arc length, from one width point to the next.
#pragma once

#include "core/PathOutline/Outline.h"

#include <algorithm>

/// Between two width points the width follows an S with level tangents at both: from `from` (x arc length, y
/// half-width) over `nLength` to `nWidth`. Raises boost::numeric::bad_numeric_cast when the arc length leaves
/// 32 bits.
CBezier EaseWidth(CPoint from, int32_t nLength, int32_t nWidth);

/// The fraction at which a width curve reaches the arc length `nLength`, clamped to its ends.
uint32_t FractionAt(const CBezier& width, int32_t nLength);

/// The curves between anchors.
std::vector<CBezier> SegmentsOf(const TOutlinePoints& vAnchors);

/// The part of the centre line between two places where a segment or a width span ends.
struct TCentrePiece {
    uint32_t tEnd;
    uint32_t uLength;
};

/// The half-width over the arc length of one piece of the centre line, from 0 on.
struct TWidthPart {
    uint32_t fEnd; ///< of the piece, in its segment: BEZIER_T_RESOLUTION for the segment's last one
    CBezier width;

    friend bool operator==(const TWidthPart&, const TWidthPart&) = default;
};

/// The widths of all pieces of a side, in its direction as all arguments: `vWidths` are `t` and half-width,
/// at least one. Raises boost::numeric::bad_numeric_cast when an arc length between two width points leaves
/// 32 bits.
std::vector<TWidthPart> WidthParts(const std::vector<TCentrePiece>& vPieces,
                                   const std::vector<std::pair<uint32_t, uint32_t>>& vWidths,
                                   const IOutlineTerm& start, const IOutlineTerm& end, EPathSide side);

/// The length of a curve from one fraction to another.
uint32_t PartLength(const CBezier& bez, uint32_t fFirst, uint32_t fLast);

/// The lengths along a path; the caller must keep its segments alive.
class CPathLengths {
public:
    explicit CPathLengths(const std::vector<CBezier>& vSegments);
    /// With the segments' own lengths.
    CPathLengths(const std::vector<CBezier>& vSegments, const std::vector<uint32_t>& vLengths);
    /// The arc length from `tFirst` to `tLast`: the sum of the truncated lengths of whole and partial
    /// segments. Raises boost::numeric::bad_numeric_cast when it exceeds 31 bits.
    int32_t Between(uint32_t tFirst, uint32_t tLast) const;

private:
    const std::vector<CBezier>& m_vSegments;
    std::vector<uint64_t> m_vStarts; ///< sums of the whole segments before each, and of all
};

/// The value between two marks (their `t` and values): an S over the arc length, with level tangents.
uint32_t EasedBetween(const CPathLengths& lengths, std::pair<uint32_t, uint32_t> lower,
                      std::pair<uint32_t, uint32_t> upper, uint32_t t);

/// The value at `t` among marks that are sorted by it, at least one: eased between neighbours, constant
/// before the first and behind the last.
template <class TMark, class ValueOf>
uint32_t EasedAt(const CPathLengths& lengths, const std::vector<TMark>& vMarks, uint32_t t, ValueOf valueOf) {
    const auto itUpper = std::ranges::lower_bound(vMarks, t, {}, &TMark::t);
    if (itUpper == vMarks.end()) return valueOf(vMarks.back());
    if (itUpper == vMarks.begin() || itUpper->t == t) return valueOf(*itUpper);
    const auto itLower = itUpper - 1;
    return EasedBetween(lengths, {itLower->t, valueOf(*itLower)}, {itUpper->t, valueOf(*itUpper)}, t);
}

/// The half-width at `t` of a stroke with these width points (sorted): eased between neighbours, constant
/// before the first and behind the last, `uWidth` without width points.
uint32_t WidthAt(const CPathLengths& lengths, const std::vector<TOutlineWidth>& vWidths, uint32_t uWidth,
                 uint32_t t, EPathSide side);

/// The width points of a stroke, or in their place one of its half-width in the middle.
std::vector<TOutlineWidth> WidthsOrMiddle(const TOutlineSource& source);

/// The half-widths at `t` by side, without the wave: WidthAt, and towards the ends as these shape them.
std::array<uint32_t, 2> TaperedWidthsAt(const TOutlineSource& source, uint32_t t);
