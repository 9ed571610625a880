// Half-widths along a stroke: curves of width over arc length, from one width point to the next.
#pragma once

#include "core/PathOutline/Outline.h"

/// Between two width points the width follows an S with level tangents at both: from `from` (x arc length, y
/// half-width) over `uLength` to `nWidth`. Raises boost::numeric::bad_numeric_cast when the arc length leaves
/// 32 bits.
CBezier EaseWidth(CPoint from, uint32_t uLength, int32_t nWidth);

/// The fraction at which a width curve reaches the arc length `nLength`, held at its ends.
uint32_t FractionAt(const CBezier& width, int32_t nLength);

/// The arc length from `tFirst` to `tLast`: of whole segments the truncated length of each, of begun ones the
/// truncated part. `vSegments` are the path's.
uint32_t PathLength(const std::vector<CBezier>& vSegments, uint32_t tFirst, uint32_t tLast);

/// The half-width at `t` of a stroke with these width points (sorted): eased between the two around, the
/// nearest one's before the first and behind the last, `uWidth` where there is none.
uint32_t WidthAt(const std::vector<CBezier>& vSegments, const std::vector<TOutlineWidth>& vWidths,
                 uint32_t uWidth, uint32_t t, EPathSide side);

/// The curves between anchors.
std::vector<CBezier> SegmentsOf(const TOutlinePoints& vAnchors);
