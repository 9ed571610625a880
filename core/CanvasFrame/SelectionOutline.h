// The animated dashes along the selection's outline.
#pragma once

#include "core/CanvasFrame/CanvasView.h"
#include "core/GDIBuffer/GDIBuffer.h"
#include "core/RasterBuffer/SelectBuffer.h"

/// Draws the outline into a copy of the window's pixels, only inside `rcClip` (client pixels): black, and
/// white where (x + y - uTick / 100) / 5 is odd, so that dashes of 5 pixels move one step every 100
/// milliseconds.
void DrawSelectionOutline(CGDIBuffer& target, const CRect& rcClip, const CSelectBuffer& select,
                          const CCanvasView& view, uint32_t uTick);

/// The bounds of the outline in window pixels, empty when there is none.
CRect SelectionRect(const CSelectBuffer& select, const CCanvasView& view);
