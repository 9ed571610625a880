// The places of canvas frames in the main frame's window, and the one that a new frame takes.
#pragma once

#include "core/Base/Geometry.h"

class ICanvasWindow;

/// Places a new frame's window where the last one was closed, in a cascade with those that are open. `szArea`
/// is the area of the MDI children, empty for no limit.
void PlaceFrame(ICanvasWindow& window, CSize szArea);
/// Whether a new frame opens maximised: as the active one is, or as the last one was closed.
bool OpensMaximized();
/// Stores the place of a frame that is being closed.
void KeepFramePlace(const ICanvasWindow& window);
