#include "core/RasterStroke/StrokeInput.h"

#include "core/RasterStroke/PressureCurve.h"

#include <cstddef>

std::vector<int> RepeatsOfStart(uint32_t uEntry, uint32_t uWindow) {
    const int nWindow = RepeatsOfEnd(uWindow);
    const auto nEntry = static_cast<int>(uEntry);
    std::vector<int> vRepeats;
    if (nEntry < nWindow)
        for (int n = nEntry == 0 ? nWindow : nWindow + 1 - nEntry; n >= 1; --n) vRepeats.push_back(n);
    return vRepeats;
}

std::vector<TCtlPoint> ControlPointsOf(const TStrokeInput& input, uint32_t uWindow) {
    if (input.bTap || input.vPoints.empty()) return input.vPoints;
    std::vector<TCtlPoint> vPoints;
    const auto add = [&](const TCtlPoint& point, int nTimes) {
        for (; nTimes > 0; --nTimes) {
            vPoints.push_back(point);
            vPoints.back().pressure =
                FadeInPressure(point.pressure, static_cast<uint32_t>(vPoints.size()) - 1, uWindow);
        }
    };
    const std::vector<int> vStart =
        input.bPen ? RepeatsOfStart(input.uEntry, uWindow) : std::vector<int>{RepeatsOfEnd(uWindow)};
    const size_t nLast = input.vPoints.size() - 1;
    for (size_t i = 0; i <= nLast; ++i) {
        int nTimes = i < vStart.size() ? vStart[i] : 1;
        if (i == nLast && !input.bPen) nTimes = RepeatsOfEnd(uWindow);
        if (i == nLast && input.bPen && !input.bLifted) nTimes = 1; // the end was noticed afterwards
        add(input.vPoints[i], nTimes);
    }
    if (!input.bLifted) return vPoints;
    TCtlPoint last = input.vPoints.back();
    last.pressure = 0;
    add(last, RepeatsOfLift(uWindow));
    return vPoints;
}
