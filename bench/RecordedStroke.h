// A recorded stroke, 2,000 events of a hand that draws loops across a canvas with changing pressure, and
// the parameters that make our strokes and libmypaint's comparable.
#pragma once

#include "core/RasterStamp/StampShape.h"

#include <benchmark/benchmark.h>

namespace Recorded {

constexpr int EVENTS = 2000;
constexpr int CANVAS = 4000; ///< pixels, both ways
constexpr uint32_t RADIUS = 16;
constexpr uint8_t BLUR_LEVEL = 75; ///< our hardness
constexpr float HARDNESS = 0.75f;  ///< libmypaint's

struct TEvent {
    double x, y;      ///< canvas pixels
    double dPressure; ///< 0 to 1
};
TEvent EventAt(int n);

/// Distance of our stamps in pixels.
double SpacingAt(uint32_t uRadius);

/// Draws the stroke with libmypaint, with dabs as dense as ours when the benchmark's argument is 1, else at
/// the library's default.
void MyPaintStroke(benchmark::State& state);

} // namespace Recorded
