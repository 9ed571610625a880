// Arc lengths. The value is defined as a truncated sum of 4096 chords a curve, which is computed only when
// needed. It differs from the integral of the speed by a millionth, so an accurate integral that is not
// close to an integer gives the same result at a fiftieth of the cost. All operations are rounded alike
// everywhere, and so is the choice between the two methods.
#include "core/Bezier/Bezier.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int STEPS = 4096;

double SumOfChords(const CBezier& bez, double dEnd) {
    double dSum = 0;
    double dX = bez.p0.x;
    double dY = bez.p0.y;
    for (int n = 1;; ++n) {
        const double t = std::min(n * (1.0 / STEPS), dEnd); // the last step may be a part of one
        const double u = 1 - t;
        const double b0 = u * u * u;
        const double b1 = 3 * u * u * t;
        const double b2 = 3 * u * t * t;
        const double b3 = t * t * t;
        const double dNextX = bez.p0.x * b0 + bez.p1.x * b1 + bez.p2.x * b2 + bez.p3.x * b3;
        const double dNextY = bez.p0.y * b0 + bez.p1.y * b1 + bez.p2.y * b2 + bez.p3.y * b3;
        dSum += std::sqrt((dNextX - dX) * (dNextX - dX) + (dNextY - dY) * (dNextY - dY));
        if (t >= dEnd) return dSum;
        dX = dNextX;
        dY = dNextY;
    }
}

// The derivative of a curve, by powers of t.
class CSpeed {
public:
    explicit CSpeed(const CBezier& bez)
        : m_adX(Of(bez.p0.x, bez.p1.x, bez.p2.x, bez.p3.x)),
          m_adY(Of(bez.p0.y, bez.p1.y, bez.p2.y, bez.p3.y)) {}

    // The integral of the speed over `nParts` equal parts of 0 to `dEnd`, by Gauss-Legendre with ten places
    // in each (Abramowitz and Stegun, table 25.4).
    double Integral(double dEnd, int nParts) {
        constexpr std::array<double, 5> PLACES{0.14887433898163122, 0.4333953941292472, 0.6794095682990244,
                                               0.8650633666889845, 0.9739065285171717};
        constexpr std::array<double, 5> WEIGHTS{0.29552422471475287, 0.26926671930999635, 0.21908636251598204,
                                                0.1494513491505806, 0.06667134430868814};
        const double dHalf = dEnd / (2 * nParts);
        double dSum = 0;
        Visit(0);
        for (int n = 0; n < nParts; ++n) {
            const double dMiddle = (2 * n + 1) * dHalf;
            for (size_t i = PLACES.size(); i-- > 0;) dSum += WEIGHTS[i] * Visit(dMiddle - dHalf * PLACES[i]);
            for (size_t i = 0; i < PLACES.size(); ++i)
                dSum += WEIGHTS[i] * Visit(dMiddle + dHalf * PLACES[i]);
        }
        Visit(dEnd);
        return dSum * dHalf;
    }
    // True when no direction differs from the next by more than 30 degrees: at a corner of the speed the
    // integral would be wrong without a warning.
    bool IsSmooth() const { return m_bSmooth; }

private:
    static std::array<double, 3> Of(double p0, double p1, double p2, double p3) {
        return {3 * (p1 - p0), 6 * (p0 - 2 * p1 + p2), 3 * (p3 - 3 * p2 + 3 * p1 - p0)};
    }

    double Visit(double t) {
        const double dX = (m_adX[2] * t + m_adX[1]) * t + m_adX[0];
        const double dY = (m_adY[2] * t + m_adY[1]) * t + m_adY[0];
        const double dSquare = dX * dX + dY * dY;
        const double dDot = dX * m_dLastX + dY * m_dLastY;
        m_bSmooth = m_bSmooth && dDot >= 0 && dDot * dDot * 4 >= 3 * dSquare * m_dLastSquare;
        m_dLastX = dX;
        m_dLastY = dY;
        m_dLastSquare = dSquare;
        return std::sqrt(dSquare);
    }

    std::array<double, 3> m_adX;
    std::array<double, 3> m_adY;
    double m_dLastX = 0;
    double m_dLastY = 0;
    double m_dLastSquare = 0;
    bool m_bSmooth = true;
};

} // namespace

uint32_t CBezier::ArcLength(uint32_t f) const {
    if (f == 0 || IsDegenerate()) return 0;
    const double dEnd = f / 65536.0;
    const double dCoarse = CSpeed(*this).Integral(dEnd, 2);
    CSpeed speed(*this);
    const double dFine = speed.Integral(dEnd, 4);
    // The error bound of the two integrals and of the chords.
    const double dOpen = 4 * std::abs(dCoarse - dFine) + dFine * 1e-6 + 1e-3;
    const double dLow = std::floor(dFine - dOpen);
    if (speed.IsSmooth() && dLow >= 0 && dLow == std::floor(dFine + dOpen))
        return static_cast<uint32_t>(dLow);
    return static_cast<uint32_t>(SumOfChords(*this, dEnd));
}
