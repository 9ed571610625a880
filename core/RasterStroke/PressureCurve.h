// Converts a pen's pressure to a radius and an opacity.
#pragma once

#include "core/RasterStroke/CtlPoint.h"

#include <cstdint>

struct TBrushParam;

/// The parameters of the evaluation; see TBrushParam.
struct TPressureParam {
    uint32_t uCurve1x = 0, uCurve1y = 100, uCurve2x = 100, uCurve2y = 0; ///< percent, y from the top
    uint8_t uAvailInput = 100;
    uint8_t uMinRadiusRate = 0;
    uint8_t uAvailAlpha = 100;
    uint8_t uMinAlphaRate = 0;
    bool bPressRadius = true;
    bool bPressAlpha = false;
    uint32_t uBrushRadius = 4; ///< half pixels
    uint8_t uBrushAlpha = 255;
};

TPressureParam PressureParamOf(const TBrushParam& param);

/// The pressure of a stroke's point `n` (0 first) under a smoothing window: a quarter for the first
/// `uWindow` points, then rising to the full value at 3 * uWindow. FINAL_PRESSURE is unchanged.
uint32_t FadeInPressure(uint32_t uPressure, uint32_t n, uint32_t uWindow);

/// The curve's output for a pressure (clamped to FULL_PRESSURE): the height of the cubic Bezier curve from
/// the lower left corner to the upper right one, 0 to 1024.
uint32_t EvaluateCurve(const TPressureParam& param, uint32_t uPressure);

/// The radius in 8192ths of a plane pixel, `nScale` plane pixels to a canvas pixel, and the opacity.
void EvaluatePressure(const TPressureParam& param, uint32_t& uRadius, uint8_t& byAlpha, uint32_t uPressure,
                      int nScale);
