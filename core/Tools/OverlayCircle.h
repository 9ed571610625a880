// The circle of a tool's size around the pointer.
#pragma once

#include "core/Tools/Overlay.h"

/// The client box of a circle around a canvas position; all lengths in eighths of a canvas pixel.
CRect CircleBox(const TOverlayMapper& mapper, CPoint ptCentre, int32_t nRadius);

/// Draws it, inverting the pixels below; one so small that it would hide what lies under the pointer is not
/// drawn.
void DrawCircle(COverlay& overlay, const TOverlayMapper& mapper, CPoint ptCentre, int32_t nRadius);
