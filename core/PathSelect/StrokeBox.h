// The box around selected strokes: its parts, and how a drag of one maps the strokes.
#pragma once

#include "core/Base/Geometry.h"

#include <array>
#include <cstdint>

/// The parts of the box. The eight handles go clockwise from the left top, corners and sides alternating.
enum EBoxPart : int {
    BOX_NONE = -1,
    BOX_LEFT_TOP,
    BOX_TOP,
    BOX_RIGHT_TOP,
    BOX_RIGHT,
    BOX_RIGHT_BOTTOM,
    BOX_BOTTOM,
    BOX_LEFT_BOTTOM,
    BOX_LEFT,
    BOX_INSIDE,
    BOX_TURN, ///< outside, near a corner
};
constexpr int BOX_HANDLES = 8;

constexpr bool IsBoxHandle(EBoxPart part) { return part >= 0 && part < BOX_HANDLES; }
constexpr bool IsBoxCorner(EBoxPart part) { return IsBoxHandle(part) && part % 2 == 0; }

/// The position of a handle.
CPoint BoxHandleAt(const CRect& rcBox, EBoxPart part);

/// An affine mapping of positions, path units. What it leaves as it is keeps its coordinates exactly.
struct TStrokeMap {
    double dFromX = 0, dFromY = 0; ///< the position that goes to (dToX, dToY)
    double dToX = 0, dToY = 0;
    std::array<double, 4> adMatrix{1, 0, 0, 1}; ///< of the way from there: x by x, x by y, y by x, y by y
    double dWidth = 1;                          ///< what widths are multiplied by

    /// The mapped position, halves rounded up; clamped far beyond what a path can store.
    CPoint operator()(CPoint pt) const;
    bool IsIdentity() const;
};

/// A drag of the box from one position to another. Corners and sides scale: the opposite corner or side
/// stays, with Alt the centre; Shift keeps a corner's proportions. A side of the box never becomes shorter
/// than a pixel, and one that is as short is not scaled. Turning goes around the centre, with Shift by steps
/// of 15 degrees. Moving with Shift keeps to one direction. `flags` are POINTER_ bits. Scaled widths are
/// multiplied by the root of the area's factor.
TStrokeMap DragBox(const CRect& rcBox, EBoxPart part, CPoint ptPress, CPoint ptNow, uint32_t flags);
