#include "core/RasterStroke/Wobble.h"

#include "core/Base/StableMath.h"
#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/StrokeRandom.h"

#include <algorithm>
#include <cmath>

uint32_t WobbleDistance(const TBrushParam& param, uint32_t uRadius) {
    if (param.BrushRadius == 0) return 0;
    const double dFull = param.BrushRadius * 4.0; // the radius in eighths of a pixel
    const double dMax = static_cast<double>(param.BrushRadius) * param.WaveDistMax;
    const double dMin = 2.0 * param.WaveDistMin;
    const double dRate = uRadius / (dFull * 1024);
    const double dThin = std::min(dMin / 3 / dFull, 0.1);
    const double dNone = dThin / 2;
    if (dNone > dRate) return 0;
    if (dThin > dRate) return static_cast<uint32_t>(dMin * (dRate - dNone) / dNone);
    if (dMin >= dMax) return static_cast<uint32_t>(dMin);
    return static_cast<uint32_t>(dMin) + static_cast<uint32_t>((dMax - dMin) * (dRate - dThin) / (1 - dThin));
}

CPoint ChooseWobbleTarget(uint32_t uDistance, CStrokeRandom& random) {
    constexpr double PI = 3.14159265358979323846;
    const int64_t nDraw = random.Rand();
    const int nDegrees = random.Rand() * 360 / CStrokeRandom::RAND_LARGEST;
    const auto nLength = static_cast<double>(nDraw * uDistance / CStrokeRandom::RAND_LARGEST);
    const TSinCos direction = StableSinCos(nDegrees * PI / 180);
    return {static_cast<int32_t>(nLength * direction.dCos), static_cast<int32_t>(nLength * direction.dSin)};
}

void CWobble::Append(const TBrushParam& param, uint32_t uPressure, uint32_t uRadius, CStrokeRandom& random) {
    if (!param.WaveEnable) {
        m_aLists[0].push_back({0, 0, 0, 0});
        return;
    }
    const size_t nApproach = std::max(param.WaveSmooth - 1, 1);
    for (size_t i = 0; i < PASSES; ++i) {
        TList& lst = m_aLists[i];
        const size_t k = lst.size() % (param.WaveSmooth + size_t{1});
        if (k == 0) m_aTargets[i] = ChooseWobbleTarget(WobbleDistance(param, uRadius), random);
        CPoint pt;
        if (!lst.empty()) pt = {lst.back().x, lst.back().y};
        if (k < nApproach) pt = {(pt.x + m_aTargets[i].x) / 2, (pt.y + m_aTargets[i].y) / 2};
        if (uPressure == 0) pt = {};
        lst.push_back({pt.x, pt.y, 0, 0});
    }
}
