#include "core/Base/StableMath.h"

#include <bit>
#include <cstddef>

double StableExp(double x) {
    using T = TExpTerms;
    const double dShifted = x * T::LOG2_E + T::ROUND;
    const double k = dShifted - T::ROUND;
    const double r = (x - k * T::LN2_HIGH) - k * T::LN2_LOW;
    double p = T::SERIES[0];
    for (size_t i = 1; i < T::SERIES.size(); ++i) p = p * r + T::SERIES[i];
    // k is added directly to the exponent.
    return std::bit_cast<double>(std::bit_cast<uint64_t>(p) + (std::bit_cast<uint64_t>(dShifted) << 52));
}

double StableLog(double x) {
    // x = m * 2^k, with m from the square root of a half to that of two.
    constexpr auto ROOT_HALF = std::bit_cast<uint64_t>(0x1.6a09e667f3bcdp-1);
    const auto uBits = std::bit_cast<uint64_t>(x);
    const int64_t k = static_cast<int64_t>(uBits - ROOT_HALF) >> 52;
    const double f = std::bit_cast<double>(uBits - (static_cast<uint64_t>(k) << 52)) - 1; // exact
    // log(1 + f) = 2 * atanh(s) = 2 * s + s * r, and 2 * s = f - s * f.
    const double s = f / (2 + f);
    const double z = s * s;
    double r = 2.0 / 21;
    for (int n = 19; n >= 3; n -= 2) r = r * z + 2.0 / n;
    r *= z;
    const auto dExponent = static_cast<double>(k);
    return dExponent * TExpTerms::LN2_HIGH + (f - (s * (f - r) - dExponent * TExpTerms::LN2_LOW));
}

double StablePow(double x, double y) { return x == 0 ? 0 : StableExp(y * StableLog(x)); }

TSinCos StableSinCos(double dAngle) {
    constexpr double TWO_OVER_PI = 0x1.45f306dc9c883p-1;
    constexpr double HALF_PI_HIGH = 0x1.921fb544p+0; // multiplied by a small integer without rounding
    constexpr double HALF_PI_LOW = 0x1.0b4611a626331p-34;
    const double k = (dAngle * TWO_OVER_PI + TExpTerms::ROUND) - TExpTerms::ROUND;
    // The angle reduced to an eighth of a turn, and its rounding error.
    const double dHigh = dAngle - k * HALF_PI_HIGH;
    const double dLow = k * HALF_PI_LOW;
    const double r = dHigh - dLow;
    const double dTail = (dHigh - r) - dLow;
    const double z = r * r;
    double s = -1.0 / 121645100408832000;
    for (const double c : {1.0 / 355687428096000, -1.0 / 1307674368000, 1.0 / 6227020800, -1.0 / 39916800,
                           1.0 / 362880, -1.0 / 5040, 1.0 / 120, -1.0 / 6})
        s = s * z + c;
    double t = -1.0 / 6402373705728000;
    for (const double c : {1.0 / 20922789888000, -1.0 / 87178291200, 1.0 / 479001600, -1.0 / 3628800,
                           1.0 / 40320, -1.0 / 720, 1.0 / 24})
        t = t * z + c;
    // The large terms are added last; their rounding error is added to the small ones.
    const double dHalf = z * 0.5;
    const double dOne = 1.0 - dHalf;
    const double dSin = r + (r * z * s + dTail * dOne);
    const double dCos = dOne + (((1.0 - dOne) - dHalf) + (z * z * t - r * dTail));
    switch (static_cast<int>(k) & 3) {
    case 0:
        return {dSin, dCos};
    case 1:
        return {dCos, -dSin};
    case 2:
        return {-dSin, -dCos};
    default:
        return {-dCos, dSin};
    }
}
