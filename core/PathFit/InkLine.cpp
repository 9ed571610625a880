#include "core/PathFit/InkLine.h"

#include "core/RasterStroke/PressureCurve.h"
#include "core/RasterStroke/ResampleWindow.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace {

constexpr double EIGHTHS = 8; ///< in a pixel
constexpr double RADIUS_TO_PIXELS = 1.0 / 8192;

/// The edge of a hard stamp fades inside its radius and beyond it. So far inside is the edge of a line that
/// covers as much, by radius, both in pixels: half the sum of the coverage across a straight line, measured.
struct TFade {
    double dRadius;
    double dInside;
};
constexpr TFade FADES[] = {{0, 0},      {0.5, 0.259}, {1, 0.325},  {1.5, 0.292}, {2, 0.318}, {2.5, 0.329},
                           {3, 0.371},  {4, 0.412},   {5, 0.462},  {6, 0.53},    {8, 0.527}, {10, 0.5},
                           {12, 0.463}, {16, 0.406},  {20, 0.359}, {32, 0.269},  {40, 0.225}};

// The half-width of the line that stamps of a radius draw.
double HalfWidthOf(double dRadius) {
    const auto* pNext = std::ranges::lower_bound(FADES, dRadius, {}, &TFade::dRadius);
    if (pNext == std::begin(FADES)) return 0;
    if (pNext == std::end(FADES)) return dRadius - std::prev(pNext)->dInside;
    const TFade& before = *std::prev(pNext);
    const double dPart = (dRadius - before.dRadius) / (pNext->dRadius - before.dRadius);
    return dRadius - before.dInside - (pNext->dInside - before.dInside) * dPart;
}

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
            look = TLook{HalfWidthOf(uRadius * RADIUS_TO_PIXELS) * EIGHTHS, static_cast<double>(byAlpha)};
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
