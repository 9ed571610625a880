// The part of a tile or plane that is not transparent.
#pragma once

#include "core/RasterBuffer/RasterBuffer.h"

/// True when the tile has a pixel that is not transparent; a 16-bit coverage tile is a defect.
bool HasPaint(const CRasterBlockBuffer& tile);

/// The bounds of a plane's pixels that are not transparent; empty for none.
CRect PaintBoundsOf(CRasterBuffer& plane);
