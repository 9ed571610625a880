// Lines of pointer and pen that nothing would take: a picture without its strokes must not pass for done.
#pragma once

#include "core/Base/Geometry.h"

class ICanvasWindow;

/// True when the active tool could work, but takes nothing from this device now, since the other one draws or
/// the mouse echoes the pen, and no hand drags the view.
bool IsRefused(bool bTablet);
/// True for a position outside the client area, in 1 / `nUnits` of a client pixel.
bool IsBeside(const ICanvasWindow& window, CPoint pt, int32_t nUnits);
/// Raises step_failure for IsRefused.
void RequireTaken(bool bTablet);
/// For a pen over a window of a tool that could work: also for IsBeside, unless the window has the capture.
void RequireTaken(const ICanvasWindow& window, CPoint pt, int32_t nUnits);
