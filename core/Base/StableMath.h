// Mathematical functions with the same result on every machine: built only from operations that IEEE 754
// rounds exactly (add, subtract, multiply, divide), in a fixed order.
#pragma once

#include <array>
#include <cstdint>

/// The constants of StableExp, shared with its vector form: exp(x) = 2^k * p(x - k * ln 2).
struct TExpTerms {
    static constexpr double LOG2_E = 0x1.71547652b82fep+0;
    static constexpr double LN2_HIGH = 0x1.62e42feep-1; ///< multiplied by k without rounding
    static constexpr double LN2_LOW = 0x1.a39ef35793c76p-33;
    /// Adding and subtracting it rounds to an integer; the low bits of the sum are that integer.
    static constexpr double ROUND = 0x1.8p52;
    /// 1 / n!, the highest power first.
    static constexpr std::array<double, 13> SERIES{
        1.0 / 479001600, 1.0 / 39916800, 1.0 / 3628800, 1.0 / 362880, 1.0 / 40320, 1.0 / 5040, 1.0 / 720,
        1.0 / 120,       1.0 / 24,       1.0 / 6,       1.0 / 2,      1.0,         1.0};
};

/// exp(x) for x of -700 to 0, accurate to about one unit in the last place.
double StableExp(double x);
/// The natural logarithm of a positive normal number, accurate to about one unit in the last place.
double StableLog(double x);
/// x to the power of y for x of 0 to 1 and y over 0, where the result is 0 or at least exp(-700). The
/// relative error is below (2 + |y * log(x)|) * 2^-52.
double StablePow(double x, double y);

struct TSinCos {
    double dSin;
    double dCos;
};

/// Sine and cosine of an angle of -7 to 7 radians, accurate to little more than half a unit in the last
/// place.
TSinCos StableSinCos(double dAngle);
