// Positions and directions of ink while it is fitted, in path units.
#pragma once

#include "core/Base/Geometry.h"

#include <cmath>

struct TInkVector {
    double x = 0;
    double y = 0;

    TInkVector operator+(TInkVector v) const { return {x + v.x, y + v.y}; }
    TInkVector operator-(TInkVector v) const { return {x - v.x, y - v.y}; }
    TInkVector operator*(double d) const { return {x * d, y * d}; }
    TInkVector operator-() const { return {-x, -y}; }
    friend bool operator==(const TInkVector&, const TInkVector&) = default;
};

inline double Dot(TInkVector a, TInkVector b) { return a.x * b.x + a.y * b.y; }
inline double Cross(TInkVector a, TInkVector b) { return a.x * b.y - a.y * b.x; }
inline double LengthOf(TInkVector v) { return std::sqrt(Dot(v, v)); }
/// The vector turned by a right angle, so that Cross(v, result) is not negative.
inline TInkVector Perpendicular(TInkVector v) { return {-v.y, v.x}; }
inline TInkVector Mix(TInkVector a, TInkVector b, double t) { return a + (b - a) * t; }
/// The direction of a vector; `otherwise` for one without length.
inline TInkVector UnitOf(TInkVector v, TInkVector otherwise) {
    const double d = LengthOf(v);
    return d > 0 ? v * (1 / d) : otherwise;
}

/// The nearest whole number, halves upward.
inline double Nearest(double d) { return std::floor(d + 0.5); }
/// The nearest place of whole path units.
inline TInkVector Nearest(TInkVector v) { return {Nearest(v.x), Nearest(v.y)}; }
inline TInkVector ToVector(CPoint pt) { return {static_cast<double>(pt.x), static_cast<double>(pt.y)}; }
/// A place of whole path units, as paths hold it.
inline CPoint ToPoint(TInkVector v) { return {static_cast<int32_t>(v.x), static_cast<int32_t>(v.y)}; }
