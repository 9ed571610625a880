// A recorded stroke, 2,000 events of a hand that draws loops across a canvas with changing pressure, and what
// our strokes and libmypaint's need to be alike.
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

/// Pixels between two of our stamps.
double SpacingAt(uint32_t uRadius);

/// libmypaint draws the stroke, its dabs as dense as ours when the benchmark's argument is 1, else as the
/// library would have them.
void MyPaintStroke(benchmark::State& state);

} // namespace Recorded
