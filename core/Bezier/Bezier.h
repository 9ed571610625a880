// Cubic curves on whole numbers. Rounding is part of every result, so that outlines and hit positions repeat
// exactly on every machine.
#pragma once

#include "core/Base/FixedMath.h"

#include <array>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

/// Steps of a path parameter from one anchor to the next.
constexpr uint32_t BEZIER_T_RESOLUTION = FIXED_ONE;

/// Four points of a cubic curve in eighths of a canvas pixel, or in any other plane whose units are whole
/// numbers. Fractions `f` are 0 to 0x10000 inclusive.
struct CBezier {
    CPoint p0;
    CPoint p1;
    CPoint p2;
    CPoint p3;

    /// The straight line with both handles at its ends.
    static CBezier Line(CPoint from, CPoint to) { return {from, from, to, to}; }

    /// The point at a fraction, toward zero. The weights are reduced to 32 bits first, so that between the
    /// ends a coordinate may come out one unit too small.
    CPoint PointAt(uint32_t f) const;
    /// The derivative at a fraction, not normalised; at the ends the direction to the next point that
    /// differs. Raises boost::numeric::bad_numeric_cast when it leaves 32 bits.
    CPoint TangentAt(uint32_t f) const;
    /// The parts before and behind a fraction; one of them is a mere point at either end. Raises
    /// boost::numeric::bad_numeric_cast when a point leaves 32 bits.
    std::pair<CBezier, CBezier> Split(uint32_t f) const;
    /// Length from the start to a fraction: the chords of steps of 1/4096, the sum truncated.
    uint32_t ArcLength(uint32_t f = BEZIER_T_RESOLUTION) const;
    CBezier Reverse() const { return {p3, p2, p1, p0}; }
    /// True when all four points coincide.
    bool IsDegenerate() const { return p0 == p1 && p0 == p2 && p0 == p3; }

    friend bool operator==(const CBezier&, const CBezier&) = default;
};

/// Where two curves cross: a fraction of each, in the middle of the chords that do.
struct TCrossing {
    uint32_t uFirst;
    uint32_t uSecond;
};

/// The crossing of `a` and `b` nearest to where `a` ends and `b` begins, by chords; nothing when they do not
/// cross.
std::optional<TCrossing> FindCrossing(const CBezier& a, const CBezier& b);

/// The head of `a` up to FindCrossing's place and the tail of `b` from it.
std::optional<std::pair<CBezier, CBezier>> Intersect(const CBezier& a, const CBezier& b);

/// Curves one behind the other: a point, then two handles and a point for each. Closed when the last point is
/// the first.
using TPolyBezier = std::vector<CPoint>;

/// The box of the control polygon: the union of the one-unit rectangles at all points. Empty without points.
CRect BezierBounds(const TPolyBezier& vPoints);
