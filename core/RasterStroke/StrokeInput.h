// The movement of a hand in a freehand stroke, and the control points that it becomes.
#pragma once

#include "core/RasterStroke/CtlPoint.h"

#include <vector>

/// The samples of a stroke, each once, as they are before smoothing. A line can be made from them again with
/// another smoothing window.
struct TStrokeInput {
    std::vector<TCtlPoint> vPoints{};
    uint32_t uEntry = 0;  ///< so many of the first points are from the pen's movement before contact
    bool bPen = false;    ///< the samples are a pen's, otherwise a mouse's
    bool bLifted = false; ///< the pen was lifted, otherwise it left during contact
    bool bTap = false;    ///< a dot; its one point has the contact's highest pressure

    friend bool operator==(const TStrokeInput&, const TStrokeInput&) = default;
};

/// The number of repeated points that fix an end of the line under a smoothing window: the start of a mouse's
/// line, and its end.
constexpr int RepeatsOfEnd(uint32_t uWindow) { return static_cast<int>(uWindow) + 2; }

/// How often the first points of a pen's line are repeated, until the window is full; `uEntry` as in
/// TStrokeInput. Points behind them are not repeated.
std::vector<int> RepeatsOfStart(uint32_t uEntry, uint32_t uWindow);

/// How often the last point of a lifted pen's line is repeated without pressure, so that the points held back
/// by the window are drawn.
constexpr int RepeatsOfLift(uint32_t uWindow) { return 2 * static_cast<int>(uWindow); }

/// The control points of a stroke under a smoothing window, faded in, without the point that ends it.
std::vector<TCtlPoint> ControlPointsOf(const TStrokeInput& input, uint32_t uWindow);
