// The settings of the pen beside those of its brush.
#pragma once

#include <cstdint>

class CIniConfig;

/// Values of the settings section "PathPen".
struct TPathPenParam {
    static constexpr uint32_t MIN_TOLERANCE = 20;
    static constexpr uint32_t MAX_TOLERANCE = 800;

    /// The largest distance of the path's edge from the drawn line's, in hundredths of a canvas pixel,
    /// MIN_TOLERANCE to MAX_TOLERANCE.
    uint32_t uTolerance = 35;

    /// Reads the section; a value out of range is replaced by its default.
    static TPathPenParam Read(CIniConfig& config);
    void Write(CIniConfig& config) const;

    friend bool operator==(const TPathPenParam&, const TPathPenParam&) = default;
};
