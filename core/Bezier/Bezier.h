// Cubic curves with integer coordinates. Rounding is defined, so that outlines and hit positions are the
// same on every machine.
#pragma once

#include "core/Base/FixedMath.h"

#include <array>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

/// Steps of a path parameter from one anchor to the next.
constexpr uint32_t BEZIER_T_RESOLUTION = FIXED_ONE;

/// The weights of a cubic curve's points at a fraction `f`, 16.16.
struct TBezierWeights {
    int64_t b0 = 0;
    int64_t b1 = 0;
    int64_t b2 = 0;
    int64_t b3 = 0;

    TBezierWeights() = default;
    explicit TBezierWeights(uint32_t f);
};

/// Four points of a cubic curve, in eighths of a canvas pixel or any other integer unit. Fractions `f` are
/// 0 to 0x10000 inclusive.
struct CBezier {
    CPoint p0;
    CPoint p1;
    CPoint p2;
    CPoint p3;

    /// The straight line with both handles at its ends.
    static CBezier Line(CPoint from, CPoint to) { return {from, from, to, to}; }

    /// The point at a fraction, rounded toward zero. The weights are reduced to 32 bits first, so that
    /// between the ends a coordinate may be one unit too small.
    CPoint PointAt(uint32_t f) const;
    /// The same by the weights of a fraction, which is neither 0 nor 1.
    CPoint PointAt(const TBezierWeights& weights) const;
    /// The derivative at a fraction, not normalised; at the ends the direction to the next different point.
    /// Raises boost::numeric::bad_numeric_cast when it exceeds 32 bits.
    CPoint TangentAt(uint32_t f) const;
    /// The parts before and behind a fraction; at either end one of them is a single point. Raises
    /// boost::numeric::bad_numeric_cast when a point exceeds 32 bits.
    std::pair<CBezier, CBezier> Split(uint32_t f) const;
    /// Length from the start to a fraction: the chords of steps of 1/4096, the sum truncated.
    uint32_t ArcLength(uint32_t f = BEZIER_T_RESOLUTION) const;
    CBezier Reverse() const { return {p3, p2, p1, p0}; }
    /// True when all four points coincide.
    bool IsDegenerate() const { return p0 == p1 && p0 == p2 && p0 == p3; }

    friend bool operator==(const CBezier&, const CBezier&) = default;
};

/// The crossing of two curves: a fraction of each, in the middle of the crossing chords.
struct TCrossing {
    uint32_t uFirst;
    uint32_t uSecond;
};

/// The crossing of `a` and `b`, by chords, that is nearest to the end of `a` and the start of `b`; nullopt
/// without a crossing.
std::optional<TCrossing> FindCrossing(const CBezier& a, const CBezier& b);

/// The part of `a` before the crossing that FindCrossing finds, and the part of `b` behind it.
std::optional<std::pair<CBezier, CBezier>> Intersect(const CBezier& a, const CBezier& b);

/// Consecutive curves: a point, then two handles and a point for each. Closed when the last point is the
/// first.
using TPolyBezier = std::vector<CPoint>;

/// Bounds of the control polygon: the union of the one-unit rectangles at all points. Empty without points.
CRect BezierBounds(const TPolyBezier& vPoints);
