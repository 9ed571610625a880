// The line that a slanted end cuts a stroke along.
#pragma once

#include "core/PathOutline/Outline.h"

#include <span>

/// A line through an end of the centre line; the stroke lies on one side of it.
struct TEndLine {
    CPoint position;
    CPoint inward; ///< across the line, toward the stroke

    bool IsInside(CPoint pt) const { return Dot(pt - position, inward) >= 0; }
};

/// The line through `position` and `corner`, for a stroke that begins at `position` in direction `tangent`.
TEndLine EndLine(CPoint position, CPoint corner, CPoint tangent);

/// Trims a side that begins beyond the line: it then begins where it first comes inside, on the part of the
/// line that leads to `corner` and not beyond twice its distance; if it does not, at `corner`, followed by
/// the first point ahead of it or the side's end. Removed points are moved to the new beginning, which
/// keeps their number.
void TrimStart(TOutlinePoints& vPoints, const TEndLine& line, const TOutlinePoint& corner);
/// The same for the side's end.
void TrimEnd(TOutlinePoints& vPoints, const TEndLine& line, const TOutlinePoint& corner);

/// The part of a closed polygon inside the line; windings stay as they are.
std::vector<CPoint> ClipPolygon(std::span<const CPoint> points, const TEndLine& line);
