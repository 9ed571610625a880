#include "core/RasterStroke/ResampleWindow.h"

#include <algorithm>
#include <cstdlib>

namespace {

// Fixed point with 16 fraction bits; each power is truncated to them before the next.
constexpr int64_t ONE = 1 << 16;

int64_t Cube(int64_t u) { return ((u * u) >> 16) * u >> 16; }

// The B-spline at the distance u, in half windows, for a window of W points.
uint32_t WeightAt(int64_t u, int64_t nWindow) {
    if (u <= ONE) return static_cast<uint32_t>((3 * Cube(u) - 6 * ((u * u) >> 16) + 4 * ONE) / (3 * nWindow));
    if (u <= 2 * ONE) return static_cast<uint32_t>(Cube(2 * ONE - u) / (3 * nWindow));
    return 0;
}

// The weight of a tap at a fraction of the way from one point to the next.
uint32_t WeightOf(int64_t nTap, int64_t nFraction, int64_t nWindow) {
    if (nWindow == 0) return static_cast<uint32_t>(nTap == 0 ? ONE - nFraction : nFraction);
    return WeightAt(std::abs((2 * ONE * nTap - 2 * nFraction + 2 * ONE) / nWindow - 2 * ONE), nWindow);
}

} // namespace

CResampleWindow::CResampleWindow(uint32_t uWindow)
    : m_uWindow(uWindow), m_nTaps(uWindow == 0 ? 2 : size_t{4} * ((uWindow + 1) / 2)),
      m_nBefore(uWindow == 0 ? 0 : GetReach()) {
    m_vWeights.reserve(m_nTaps * STEPS_PER_POINT);
    for (uint32_t uPhase = 0; uPhase < STEPS_PER_POINT; ++uPhase) {
        const int64_t nFraction = int64_t{uPhase} * ONE / STEPS_PER_POINT;
        for (size_t nTap = 0; nTap < m_nTaps; ++nTap) {
            m_vWeights.push_back(WeightOf(static_cast<int64_t>(nTap), nFraction, m_uWindow));
            m_auSums[uPhase] += m_vWeights.back();
        }
    }
}

TCtlPoint CResampleWindow::PointAt(const TCtlPoint* pPoints, size_t nCount, uint32_t uStep) const {
    const uint32_t uPosition = uStep & 0xFFFF;
    const uint32_t uPhase = uPosition % STEPS_PER_POINT;
    const auto nFirst =
        static_cast<ptrdiff_t>(uPosition / STEPS_PER_POINT) - static_cast<ptrdiff_t>(m_nBefore);
    const uint32_t* pWeight = m_vWeights.data() + uPhase * m_nTaps;
    int64_t x = 0;
    int64_t y = 0;
    uint32_t uPressure = 0;
    uint32_t uAltitude = 0;
    for (size_t nTap = 0; nTap < m_nTaps; ++nTap) {
        const ptrdiff_t nAt = std::clamp<ptrdiff_t>(nFirst + static_cast<ptrdiff_t>(nTap), 0,
                                                    static_cast<ptrdiff_t>(nCount) - 1);
        const TCtlPoint& point = pPoints[nAt];
        x += int64_t{point.x} * pWeight[nTap];
        y += int64_t{point.y} * pWeight[nTap];
        uPressure += point.pressure * pWeight[nTap];
        uAltitude += point.altitude * pWeight[nTap];
    }
    const uint32_t uSum = m_auSums[uPhase];
    return {static_cast<int32_t>(x / uSum), static_cast<int32_t>(y / uSum), uPressure / uSum,
            uAltitude / uSum};
}
