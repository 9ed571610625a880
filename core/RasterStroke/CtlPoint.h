// A control point of a stroke.
#pragma once

#include <cstdint>

struct TCtlPoint {
    int32_t x; ///< eighths of a canvas pixel
    int32_t y;
    uint32_t pressure; ///< 0 to 1024, or FINAL_PRESSURE
    uint32_t altitude; ///< degrees, 0 to 90 (upright)

    friend bool operator==(const TCtlPoint&, const TCtlPoint&) = default;
};

/// The pressure of the point that ends a stroke; no pen sends it.
constexpr uint32_t FINAL_PRESSURE = 1025;
