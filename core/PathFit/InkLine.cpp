#include "core/PathFit/InkLine.h"

#include "core/RasterStroke/PressureCurve.h"
#include "core/RasterStroke/ResampleWindow.h"

#include <algorithm>
#include <optional>

namespace {

constexpr double RADIUS_TO_EIGHTHS = 1.0 / 1024; ///< from 8192ths of a pixel

/// Radius and opacity by pressure, each evaluated once.
class CDiscs {
public:
    explicit CDiscs(const TBrushParam& param)
        : m_param(PressureParamOf(param)), m_vLooks(FULL_PRESSURE + 1) {}

    TInkDisc At(const TCtlPoint& pt) {
        std::optional<TLook>& look = m_vLooks[std::min(pt.pressure, FULL_PRESSURE)];
        if (!look) {
            uint32_t uRadius = 0;
            uint8_t byAlpha = 0;
            EvaluatePressure(m_param, uRadius, byAlpha, pt.pressure, 1);
            look = TLook{uRadius * RADIUS_TO_EIGHTHS, static_cast<double>(byAlpha)};
        }
        return {static_cast<double>(pt.x), static_cast<double>(pt.y), look->dHalf, look->dAlpha};
    }

private:
    struct TLook {
        double dHalf;
        double dAlpha;
    };
    TPressureParam m_param;
    std::vector<std::optional<TLook>> m_vLooks;
};

} // namespace

std::vector<TInkDisc> DrawnLine(const std::vector<TCtlPoint>& vPoints, const TBrushParam& param) {
    if (vPoints.empty()) return {};
    const CResampleWindow window(
        static_cast<uint32_t>(std::min<size_t>(param.CurveStrength, vPoints.size())));
    std::vector<TCtlPoint> vSteps{vPoints.front()};
    vSteps.reserve(vPoints.size() * STEPS_PER_POINT + 1);
    for (size_t n = 1; n <= vPoints.size() * STEPS_PER_POINT; ++n)
        vSteps.push_back(window.PointAt(vPoints.data(), vPoints.size(), static_cast<uint32_t>(n)));
    const auto isPressed = [](const TCtlPoint& pt) { return pt.pressure != 0; };
    auto itFirst = std::find_if(vSteps.begin(), vSteps.end(), isPressed);
    if (itFirst == vSteps.end()) return {};
    auto itLast = std::find_if(vSteps.rbegin(), vSteps.rend(), isPressed).base();
    // A segment is drawn when one of its ends has pressure.
    if (itFirst != vSteps.begin()) --itFirst;
    if (itLast != vSteps.end()) ++itLast;
    CDiscs discs(param);
    std::vector<TInkDisc> vLine;
    vLine.reserve(static_cast<size_t>(itLast - itFirst));
    for (auto it = itFirst; it != itLast; ++it) vLine.push_back(discs.At(*it));
    return vLine;
}
