// Integer and 16.16 fixed-point arithmetic with defined rounding.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>

/// 1.0 as a 16.16 fixed-point number.
constexpr uint32_t FIXED_ONE = 0x10000;

/// a * b / c, halves rounded away from zero; -1 for a zero divisor and for a result beyond 32 bits.
int32_t MulDiv(int64_t a, int64_t b, int64_t c);

/// n / 0x10000, rounded toward zero.
constexpr int64_t ShiftFixed(int64_t n) { return (n + (n < 0 ? 0xFFFF : 0)) >> 16; }

/// x1 * y2 - y1 * x2: positive when b lies clockwise of a on the screen.
constexpr int64_t Cross(CPoint a, CPoint b) { return int64_t{a.x} * b.y - int64_t{a.y} * b.x; }

/// x1 * x2 + y1 * y2.
constexpr int64_t Dot(CPoint a, CPoint b) { return int64_t{a.x} * b.x + int64_t{a.y} * b.y; }

/// (y, -x): a quarter turn counterclockwise on the screen.
constexpr CPoint Rot90(CPoint pt) { return {pt.y, -pt.x}; }

constexpr bool IsZero(CPoint pt) { return pt.x == 0 && pt.y == 0; }

/// Length of a vector, truncated.
uint32_t LengthDown(CPoint pt);

/// Length of a vector to the nearest whole number, halves upward.
uint32_t LengthRound(CPoint pt);

/// The vector scaled to `nLength`, computed with its rounded length; zero stays zero.
CPoint Scale(CPoint pt, int64_t nLength);

/// The sum; raises boost::numeric::bad_numeric_cast when it exceeds 32 bits (the text tells overflow from
/// underflow).
CPoint CheckedAdd(CPoint a, CPoint b);
