// All that a vector eraser would take away, as lines over the canvas.
#pragma once

#include "core/PathErase/ErasePlan.h"
#include "core/Tools/Overlay.h"

/// True when the same stretches of the same paths go.
bool IsSamePreview(const std::vector<TErasedPath>& a, const std::vector<TErasedPath>& b);

/// The centre lines and both edges of all that goes, as points in path units.
std::vector<std::vector<CPoint>> GetErasedLines(const std::vector<TErasedPath>& vErased);

/// Client rectangles that together hold the lines; many of them for a long line, so that little is painted.
std::vector<CRect> BoxesOfLines(const std::vector<std::vector<CPoint>>& vLines, const TOverlayMapper& mapper);
