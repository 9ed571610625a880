// The commands that change a raster layer's pixels by a dialog.
#pragma once

#include "core/ImageDialogs/ImageRun.h"

/// Level correction of the active layer by its dialog, for which floating pixels are merged. A layer that is
/// not a raster layer gets a box. True when pixels have changed. Raises cancelled_error, after which none
/// has.
bool CorrectLevels(const TImageRun& run);
/// The same for hue, saturation and brightness.
bool ChangeHueAndBrightness(const TImageRun& run);
