// Rough hands: strokes as pens send them at 200 samples a second, made by a seeded generator.
#pragma once

#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/CtlPoint.h"
#include "core/RasterStroke/PressureCurve.h"

#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <string>
#include <vector>

/// A hand's stroke as a brush stroke takes it: faded in, without the final point.
struct THand {
    std::string strName;
    TBrushParam param;
    std::vector<TCtlPoint> vPoints;
};

/// A position in pixels and a pressure of 0 to 1.
struct THandPlace {
    double x;
    double y;
    double dPressure;
};

/// `nSamples` samples of a movement over 0 to 1, with a tremor of `dJitter` pixels, for a brush of a diameter
/// in pixels; the pressure rises and falls within a share of 1 / `nRamp` at both ends.
inline THand MakeHand(const std::string& strName, int nSamples, double dSize, double dJitter, int nRamp,
                      const std::function<THandPlace(double)>& fnPlace, uint32_t uSeed = 1) {
    std::mt19937 random(uSeed);
    const auto shake = [&] { return (static_cast<double>(random() % 2001) / 1000 - 1) * dJitter; };
    THand hand{strName, {}, {}};
    hand.param.BrushRadius = static_cast<uint32_t>(dSize);
    for (int n = 0; n < nSamples; ++n) {
        const double s = nSamples > 1 ? static_cast<double>(n) / (nSamples - 1) : 0.5;
        THandPlace place = fnPlace(s);
        const double dRamp = std::min({1.0, (s * nSamples + 1) / nRamp, ((1 - s) * nSamples + 1) / nRamp});
        const double dX = (place.x + shake()) * 8, dY = (place.y + shake()) * 8;
        const auto uPressure = static_cast<uint32_t>(
            std::clamp(place.dPressure * dRamp + shake() * 0.02, 0.01, 1.0) * FULL_PRESSURE);
        hand.vPoints.push_back({static_cast<int32_t>(std::lround(dX)), static_cast<int32_t>(std::lround(dY)),
                                FadeInPressure(uPressure, static_cast<uint32_t>(n), hand.param.CurveStrength),
                                UPRIGHT});
    }
    return hand;
}

/// The twelve hands.
inline std::vector<THand> AllHands() {
    constexpr double TURN = 2 * std::numbers::pi;
    const auto zigzag = [](double d) { return std::abs(d - std::floor(d) - 0.5) * 2; };
    std::vector<THand> vHands;
    vHands.push_back(MakeHand("jitter", 240, 6, 0.35, 12, [&](double s) {
        return THandPlace{40 + 260 * s, 120 + 40 * std::sin(s * TURN * 1.3), 0.6 + 0.1 * std::sin(s * 9)};
    }));
    vHands.push_back(MakeHand("slow", 900, 8, 0.1, 60, [&](double s) {
        return THandPlace{40 + 120 * s, 80 + 30 * std::sin(s * TURN), 0.5 + 0.3 * s};
    }));
    vHands.push_back(MakeHand("fast", 34, 12, 0.1, 8, [&](double s) {
        return THandPlace{30 + 500 * s, 260 - 220 * s * s, 0.9 - 0.3 * s};
    }));
    vHands.push_back(MakeHand("hatching", 420, 4, 0.15, 6, [&](double s) {
        return THandPlace{40 + 160 * s + 26 * zigzag(s * 14), 60 + 70 * zigzag(s * 14), 0.7};
    }));
    vHands.push_back(MakeHand("letters", 360, 3, 0.08, 6, [&](double s) {
        return THandPlace{40 + 90 * s + 4 * std::sin(s * TURN * 12), 60 + 5 * std::sin(s * TURN * 9 + 1),
                          0.6 + 0.3 * std::sin(s * TURN * 9)};
    }));
    vHands.push_back(MakeHand("circles", 500, 6, 0.15, 14, [&](double s) {
        return THandPlace{120 + (50 + 3 * std::sin(s * 7)) * std::cos(s * TURN * 3),
                          120 + (46 + 4 * std::cos(s * 5)) * std::sin(s * TURN * 3), 0.7};
    }));
    vHands.push_back(MakeHand("spiral", 460, 10, 0.1, 20, [&](double s) {
        return THandPlace{140 + 90 * s * std::cos(s * TURN * 4), 140 + 90 * s * std::sin(s * TURN * 4),
                          0.3 + 0.6 * s};
    }));
    vHands.push_back(MakeHand("zigzag", 160, 14, 0.05, 10, [&](double s) {
        return THandPlace{40 + 220 * s, 60 + 80 * zigzag(s * 4), 0.8};
    }));
    vHands.push_back(MakeHand("swell", 300, 24, 0.1, 50, [&](double s) {
        return THandPlace{40 + 260 * s, 120 + 50 * std::sin(s * TURN), 0.5 - 0.45 * std::cos(s * TURN * 2)};
    }));
    vHands.push_back(MakeHand("tap", 9, 16, 0.1, 4, [&](double) { return THandPlace{50, 50, 0.9}; }));
    vHands.push_back(MakeHand("retrace", 300, 9, 0.12, 12, [&](double s) {
        const double d = zigzag(s * 1.5 + 0.5);
        return THandPlace{40 + 150 * d, 70 + 30 * std::sin(d * 3), 0.75};
    }));
    vHands.push_back(MakeHand("tremor", 2000, 5, 0.25, 30, [&](double s) {
        return THandPlace{40 + 800 * s, 200 + 60 * std::sin(s * TURN * 3) + 1.2 * std::sin(s * TURN * 70),
                          0.55 + 0.2 * std::sin(s * TURN * 5)};
    }));
    return vHands;
}
