// The smoothing of a stroke: control points filtered by a cubic B-spline as wide as a window, or joined by
// straight lines without one.
#pragma once

#include "core/RasterStroke/CtlPoint.h"

#include <cstddef>
#include <vector>

/// Steps from one control point to the next.
constexpr uint32_t STEPS_PER_POINT = 8;

/// Positions count in steps; they wrap after 8192 control points, the maximum of a stroke.
class CResampleWindow {
public:
    /// `uWindow` control points wide; 0 is no window.
    explicit CResampleWindow(uint32_t uWindow);

    uint32_t GetWindow() const { return m_uWindow; }
    /// The number of points after a position that the curve depends on, which is also its lag.
    size_t GetReach() const { return m_nTaps / 2; }
    /// The curve through the first `nCount` (at least 1) of the points at a step; quotients are truncated
    /// toward zero. Ends are repeated.
    TCtlPoint PointAt(const TCtlPoint* pPoints, size_t nCount, uint32_t uStep) const;

private:
    uint32_t m_uWindow;
    size_t m_nTaps;
    size_t m_nBefore;                 ///< taps before a position
    std::vector<uint32_t> m_vWeights; ///< m_nTaps for each of the 8 phases, in 65536ths
    uint32_t m_auSums[STEPS_PER_POINT] = {};
};
