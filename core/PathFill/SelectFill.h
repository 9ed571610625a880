// A closed outline as a selection.
#pragma once

#include "core/RasterBuffer/SelectBuffer.h"

#include <span>

/// Fills an empty selection's mask with the exact coverage of an outline: for each pixel the number of its
/// cells (CPathFill's) that the outline winds around, up to 255, without any softening. Without antialiasing
/// a pixel is selected whole from 128 on. `points` are as CPathFill's, on the canvas; other lists raise an
/// invalid_argument violation.
///
/// Tiles exist only where something is selected, and those selected whole are the one full tile: the mask
/// takes memory along the outline only. The outline of the selection is not updated.
void FillSelect(CSelectBuffer& select, std::span<const CPoint> points, bool bAntialias);
