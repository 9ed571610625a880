#include "core/PathOutline/Wave.h"

#include "core/Base/Failure.h"

#include <cmath>
#include <map>
#include <random>

namespace {

using TWidthMap = std::map<uint32_t, TOutlineWidth>;

// Steps of a segment's samples: the power of two above an even division, so that samples keep their
// positions while the segment's length changes.
uint64_t SampleStep(uint32_t uLength, uint32_t uStep) {
    const uint32_t n = uStep == 0 ? 0 : uLength / uStep;
    uint32_t s = BEZIER_T_RESOLUTION / (n == 0 ? 1 : n);
    for (int nShift = 1; nShift <= 16; nShift *= 2) s |= s >> nShift;
    return uint64_t{s} + 1;
}

// x to the power of 0.75, of operations that are rounded alike everywhere.
double ThreeQuarterPower(double x) { return std::sqrt(x) * std::sqrt(std::sqrt(x)); }

// The widths at `t` between the neighbouring points; toward the path's ends the way is curved.
std::array<uint32_t, 2> Between(const TWidthMap& mapWidth, uint32_t t, uint32_t tLast) {
    const auto iterU = mapWidth.upper_bound(t);
    SELF_CHECK(defect_logic, iterU != mapWidth.end());
    SELF_CHECK(defect_logic, iterU != mapWidth.begin());
    const auto iterL = std::prev(iterU);
    SELF_CHECK(defect_logic, iterU->first != iterL->first);
    uint64_t a = t - iterL->first;
    uint64_t b = iterU->first - t;
    const auto S = static_cast<double>(a + b);
    const uint64_t uSum = a + b;
    if (iterL->first == 0) {
        a = static_cast<uint64_t>(S * ThreeQuarterPower(static_cast<double>(a) / S));
        b = uSum - a;
    } else if (iterU->first == tLast) {
        b = static_cast<uint64_t>(S * ThreeQuarterPower(static_cast<double>(b) / S));
        a = uSum - b;
    }
    std::array<uint32_t, 2> auWidth{};
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
        auWidth[side] = static_cast<uint32_t>(
            (b * iterL->second.auWidth[side] + a * iterU->second.auWidth[side]) / (a + b));
    return auWidth;
}

// The base points of the wave: those given, and the ends with their own widths.
TWidthMap WithEnds(const TOutlineSource& source, uint32_t tLast) {
    TWidthMap mapWidth;
    for (const TOutlineWidth& width : source.vWidths) mapWidth.emplace(width.t, width);
    const auto widthsOf = [](const IOutlineTerm& term) {
        return std::array{term.GetWidth(SIDE_LEFT), term.GetWidth(SIDE_RIGHT)};
    };
    mapWidth[0] = {0, widthsOf(*source.pBegin)};
    mapWidth[tLast] = {tLast, widthsOf(*source.pEnd)};
    return mapWidth;
}

} // namespace

std::vector<TOutlineWidth> WaveWidths(const TOutlineSource& source, const std::vector<uint32_t>& vLengths) {
    const uint32_t tLast = LastParameter(source.vAnchors);
    const TWidthMap mapWidth = WithEnds(source, tLast);
    std::mt19937 random;
    const double dWave = source.wave.uWidth;
    const auto noisy = [&](uint32_t uWidth) {
        const double r = random() / 4294967296.0 * (2 * dWave) - dWave;
        const double f = std::min(uWidth / dWave * 0.5 + 0.5, 1.0); // less noise at thin places
        return static_cast<uint32_t>(std::max(uWidth + r * f, 0.0));
    };
    std::vector<TOutlineWidth> vWidths;
    uint32_t tBase = 0;
    for (const uint32_t uLength : vLengths) {
        const uint64_t uStep = SampleStep(uLength, source.wave.uStep);
        for (uint64_t u = 0; u < BEZIER_T_RESOLUTION; u += uStep) {
            const uint32_t t = tBase + static_cast<uint32_t>(u);
            const auto itGiven = mapWidth.find(t);
            const auto auWidth =
                itGiven != mapWidth.end() ? itGiven->second.auWidth : Between(mapWidth, t, tLast);
            const uint32_t uLeft = noisy(auWidth[SIDE_LEFT]);
            vWidths.push_back({t, {uLeft, noisy(auWidth[SIDE_RIGHT])}});
        }
        tBase += BEZIER_T_RESOLUTION;
    }
    return vWidths;
}

uint64_t CountWaveWidths(const TOutlineSource& source) {
    uint64_t uCount = 0;
    for (size_t i = 1; i < source.vAnchors.size(); ++i) {
        const CBezier segment = SegmentOf(source.vAnchors[i - 1], source.vAnchors[i]);
        const uint64_t uStep = SampleStep(segment.ArcLength(), source.wave.uStep);
        uCount += (BEZIER_T_RESOLUTION + uStep - 1) / uStep;
    }
    return uCount;
}
