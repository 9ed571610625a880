// The shapes that the selection tool draws, as selections.
#pragma once

#include "core/RasterBuffer/SelectBuffer.h"

#include <span>
#include <vector>

/// The numbers of the settings.
enum class ESelectShape : int {
    Rectangle, ///< the pixels under the first and the last point, and all between
    Ellipse,   ///< inside the outer edges of that rectangle
    Polygon,   ///< through the centres of all points' pixels
};

/// Ways to combine a shape with the selection there is.
enum class EShapeMode { Replace, Add, Subtract };

using TSelectPtr = boost::shared_ptr<CSelectBuffer>;

/// The rectangle of pixels that two opposite corners, canvas pixels, lie in.
CRect SpanOf(CPoint ptFrom, CPoint ptTo);

/// The selection of a shape: exact coverage, or with `bAntialias` false whole pixels, those covered by half.
/// Null when no pixel of the canvas is selected; a single place, however often it is listed, is a click and
/// selects nothing. `points` are canvas pixels in the order in which they were drawn, also beyond the canvas.
/// The outline of the selection is not updated.
TSelectPtr MakeShapeSelect(ESelectShape shape, std::span<const CPoint> points, bool bAntialias,
                           CSize szCanvas);

/// The selection `spOld` with a shape added to it, subtracted from it or in its place, and with its outline.
/// Null stands for no selection on either side, and is returned when no pixel is left.
TSelectPtr CombineSelect(const TSelectPtr& spOld, const TSelectPtr& spNew, EShapeMode mode);

/// True when both select each pixel of the canvas as much. Null stands for no selection.
bool IsSameSelection(const TSelectPtr& sp1, const TSelectPtr& sp2);
