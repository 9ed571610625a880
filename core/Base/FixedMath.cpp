#include "core/Base/FixedMath.h"

#include <boost/numeric/conversion/cast.hpp>

#include <cmath>
#include <limits>

namespace {

template <class T>
T RoundedQuotient(T product, T divisor) {
    const T abs = product < 0 ? -product : product;
    const T absDivisor = divisor < 0 ? -divisor : divisor;
    const T quotient = (abs + absDivisor / 2) / absDivisor;
    return (product < 0) != (divisor < 0) ? -quotient : quotient;
}

template <class T>
int32_t Narrow(T n) {
    const bool bFits = n >= std::numeric_limits<int32_t>::min() && n <= std::numeric_limits<int32_t>::max();
    return bFits ? static_cast<int32_t>(n) : -1;
}

// The sum of the squares is exact and its root rounded once: the result is the same on every machine.
double Length(CPoint pt) { return std::sqrt(static_cast<double>(Dot(pt, pt))); }

} // namespace

int32_t MulDiv(int64_t a, int64_t b, int64_t c) {
    constexpr int64_t EASY = int64_t{1} << 62;
    if (c == 0) return -1;
    int64_t nProduct = 0;
    // Ordinary products are divided in 64 bits, which is several times faster, and by the most frequent
    // divisor with a shift.
    if (!__builtin_mul_overflow(a, b, &nProduct) && nProduct > -EASY && nProduct < EASY && c > -EASY &&
        c < EASY)
        return Narrow(c == FIXED_ONE ? RoundedQuotient(nProduct, int64_t{FIXED_ONE})
                                     : RoundedQuotient(nProduct, c));
    return Narrow(RoundedQuotient<__int128>(static_cast<__int128>(a) * b, c));
}

uint32_t LengthDown(CPoint pt) { return static_cast<uint32_t>(Length(pt)); }

uint32_t LengthRound(CPoint pt) { return static_cast<uint32_t>(Length(pt) + 0.5); }

CPoint Scale(CPoint pt, int64_t nLength) {
    const uint32_t uLength = LengthRound(pt);
    if (uLength == 0) return {};
    return {MulDiv(pt.x, nLength, uLength), MulDiv(pt.y, nLength, uLength)};
}

CPoint CheckedAdd(CPoint a, CPoint b) {
    return {boost::numeric_cast<int32_t>(int64_t{a.x} + b.x),
            boost::numeric_cast<int32_t>(int64_t{a.y} + b.y)};
}
