// Straight segments between resampled points, stepped through at the spacing of the stamps.
#pragma once

#include "core/RasterStroke/CtlPoint.h"

#include <cmath>

class CSegmentWalk {
public:
    /// From one point to another (canvas eighths), `nScale` plane pixels to a canvas pixel.
    CSegmentWalk(const TCtlPoint& ptFrom, const TCtlPoint& ptTo, int nScale)
        : m_ptFrom(ptFrom), m_ptTo(ptTo), m_nScale(nScale) {
        const auto dx = static_cast<double>(int64_t{ptTo.x} - ptFrom.x);
        const auto dy = static_cast<double>(int64_t{ptTo.y} - ptFrom.y);
        m_uLength = static_cast<uint32_t>(nScale) * static_cast<uint32_t>(std::sqrt(dx * dx + dy * dy) + 0.5);
    }

    /// In plane eighths; also 0 when neither end has pressure.
    uint32_t GetLength() const { return m_ptFrom.pressure == 0 && m_ptTo.pressure == 0 ? 0 : m_uLength; }
    /// The point at a distance (less than the length) from the beginning, in plane eighths.
    TCtlPoint PointAt(uint32_t uAt) const {
        const int64_t nAt = uAt;
        const int64_t nLength = m_uLength;
        const auto mix = [&](int64_t nFrom, int64_t nTo) {
            return (nFrom * (nLength - nAt) + nTo * nAt) / nLength;
        };
        return {static_cast<int32_t>(m_nScale * (int64_t{m_ptFrom.x} * (nLength - nAt) + m_ptTo.x * nAt) /
                                     nLength),
                static_cast<int32_t>(m_nScale * (int64_t{m_ptFrom.y} * (nLength - nAt) + m_ptTo.y * nAt) /
                                     nLength),
                static_cast<uint32_t>(mix(m_ptFrom.pressure, m_ptTo.pressure)),
                static_cast<uint32_t>(mix(m_ptFrom.altitude, m_ptTo.altitude))};
    }

private:
    TCtlPoint m_ptFrom;
    TCtlPoint m_ptTo;
    int m_nScale;
    uint32_t m_uLength;
};
