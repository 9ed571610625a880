// A pen's sample on the canvas, which is also a control point of a stroke.
#pragma once

#include <cstdint>

struct TCtlPoint {
    int32_t x; ///< eighths of a canvas pixel
    int32_t y;
    uint32_t pressure; ///< 0 to 1024, or FINAL_PRESSURE
    uint32_t altitude; ///< degrees, 0 to 90 (upright)

    friend bool operator==(const TCtlPoint&, const TCtlPoint&) = default;
};

/// Full pressure of a pen; a mouse always has it.
constexpr uint32_t FULL_PRESSURE = 1024;
/// The altitude of a pen held upright, and of a mouse.
constexpr uint32_t UPRIGHT = 90;
/// The pressure of the point that ends a stroke; no pen sends it.
constexpr uint32_t FINAL_PRESSURE = 1025;
