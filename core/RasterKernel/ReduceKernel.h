// Shrinks a plane by averaging, for thumbnails.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>

/// Averages `pSource` (szSource, no padding) into `pDest` (szDest). With `pAlpha` (the alpha plane of the
/// same source) samples of alpha 0 do not count, so that the colour of transparent pixels does not bleed into
/// an edge; a target pixel without any counted sample becomes 0. Where the sizes are exact multiples the
/// result is the integer mean, truncated; otherwise each sample weighs by its covered area. Raises
/// constraint_violation_as<defect_logic> when the target is larger than the source.
void ReducePlane(uint8_t* pDest, CSize szDest, const uint8_t* pSource, const uint8_t* pAlpha, CSize szSource);
/// The same for 16-bit samples.
void ReducePlane(uint16_t* pDest, CSize szDest, const uint16_t* pSource, const uint8_t* pAlpha,
                 CSize szSource);
