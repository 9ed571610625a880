#include "core/RasterStroke/PressureCurve.h"

#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/CtlPoint.h"

#include <algorithm>

namespace {

double ToCurve(uint32_t uPercent) { return static_cast<int32_t>(uPercent) * 1024 / 100; }

// A cubic from `dFirst` over two handles to `dLast` at t.
double Cubic(double dFirst, double dHandle1, double dHandle2, double dLast, double t) {
    const double s = 1 - t;
    return dFirst * (s * s * s) + 3 * (s * s) * t * dHandle1 + 3 * s * (t * t) * dHandle2 +
           dLast * (t * t * t);
}

uint32_t LevelOf(uint8_t uPercent) { return std::max(uPercent * 1024u / 100u, 1u); }

// Similar pressures share a stamp: the larger the radius, the coarser the steps.
uint32_t QuantizeRadius(uint32_t uRadius) {
    const int nBits = uRadius >= 0x40000 ? 11 : uRadius < 0x10000 ? 9 : 10;
    return uRadius >> nBits << nBits;
}

} // namespace

TPressureParam PressureParamOf(const TBrushParam& p) {
    return {p.PressCurve1x, p.PressCurve1y, p.PressCurve2x, p.PressCurve2y, p.AvailInput,  p.MinRadiusRate,
            p.AvailAlpha,   p.MinAlphaRate, p.PressRadius,  p.PressAlpha,   p.BrushRadius, p.BrushAlpha};
}

uint32_t FadeInPressure(uint32_t uPressure, uint32_t n, uint32_t uWindow) {
    if (uPressure == FINAL_PRESSURE || n >= 3 * uWindow) return uPressure;
    if (n < uWindow) return uPressure / 4;
    return ((uPressure * 3 * n) / uWindow >> 3) - (uPressure >> 3);
}

uint32_t EvaluateCurve(const TPressureParam& param, uint32_t uPressure) {
    constexpr double PRECISION = 0x1p-11;
    const double p = std::min(uPressure, FULL_PRESSURE);
    const double dX1 = ToCurve(param.uCurve1x);
    const double dX2 = ToCurve(param.uCurve2x);
    double dLow = 0;
    double dHigh = 1;
    double t = 0.5;
    while (dHigh - dLow > PRECISION) {
        (p > Cubic(0, dX1, dX2, 1024, t) ? dLow : dHigh) = t;
        t = (dLow + dHigh) / 2;
    }
    const double y = 0.5 + Cubic(1024, ToCurve(param.uCurve1y), ToCurve(param.uCurve2y), 0, t);
    return 1024 - static_cast<uint32_t>(y);
}

void EvaluatePressure(const TPressureParam& param, uint32_t& uRadius, uint8_t& byAlpha, uint32_t uPressure,
                      int nScale) {
    const uint32_t q = EvaluateCurve(param, uPressure);
    byAlpha = param.uBrushAlpha;
    if (param.bPressAlpha) {
        const uint32_t uLevel = LevelOf(param.uAvailAlpha);
        const uint32_t uFloor = param.uMinAlphaRate * uint32_t{param.uBrushAlpha} / 100;
        byAlpha = static_cast<uint8_t>(std::min(uLevel, q) * (param.uBrushAlpha - uFloor) / uLevel + uFloor);
    }
    uRadius = ((param.uBrushRadius << 13) * static_cast<uint32_t>(nScale)) >> 1;
    if (!param.bPressRadius) return;
    const uint64_t uLevel = LevelOf(param.uAvailInput);
    const uint64_t uFloor = uint64_t{uRadius} * param.uMinRadiusRate / 100;
    uRadius = QuantizeRadius(
        static_cast<uint32_t>(std::min<uint64_t>(uLevel, q) * (uRadius - uFloor) / uLevel + uFloor));
}
