#include "core/RasterStamp/StampShape.h"

#include <algorithm>

TStampShape MakeStampShape(uint32_t uRadius, uint32_t uBlurLevel, int nScale) {
    const uint32_t uPixel = static_cast<uint32_t>(nScale) * 8192;
    const uint32_t uEdge = std::min(uPixel + uRadius / 10, 2 * uPixel);
    const uint32_t uWidest = uRadius > uEdge ? uRadius - uEdge : 0;
    const uint32_t uCore = std::min(uWidest, static_cast<uint32_t>(uint64_t{uBlurLevel} * uRadius / 100));
    return {uCore, ((uRadius - uCore) * 3 >> 1) + uCore};
}

uint32_t SpacingOf(const TStampShape& shape, uint32_t uBlurLevel, int nScale) {
    uint32_t uMost = 28;
    // Only the levels that the user can select have their own limit.
    if (nScale == 1 && uBlurLevel == 100) uMost = 16;
    if (nScale == 1 && uBlurLevel == 75) uMost = 20;
    if (nScale == 1 && (uBlurLevel == 50 || uBlurLevel == 25)) uMost = 24;
    return std::clamp(shape.uOuter >> 12, 8u, uMost);
}
