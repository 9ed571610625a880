// A closed Bezier outline as straight lines that do not depend on the region of interest.
//
// A segment is halved until its hull is at most 128 pixels wide and high, then evaluated at 2^k equal
// steps,
// k from its second differences. All of this is integer arithmetic: halving rounds to 1/1024 of a cell, the
// lines' ends to 1/16. Moving an outline by whole cells moves the lines by as much, and reversing it
// reverses the lines. The lines stay within a quarter of a cell of the curve: 1/6 by the steps, 1/23 by
// the rounding of their ends, the rest by the halving (1/1448 a level).
//
// A segment is followed only inside the requested rectangle. A part beyond the right side, the top or the
// bottom changes no winding number there and is omitted; one beyond the left side becomes a vertical line.
#pragma once

#include "core/Base/Geometry.h"
#include "core/RasterKernel/CrossingKernel.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>

/// Mask cells per pixel, in each direction.
constexpr int32_t FILL_CELLS = CROSSING_CELLS;
/// The unit of lines: sixteenths of a cell.
constexpr int LINE_BITS = 4;
/// Bits of the unit in which segments are halved: 1/1024 of a cell.
constexpr int CURVE_BITS = 10;

/// A segment in 1/1024 cells, in 48 bits.
struct TCurve {
    int64_t x[4];
    int64_t y[4];
};

/// Passes lines to `Sink`: AddLines(xs, ys, count) with count + 1 points, sixteenths of a cell, in the order
/// of the outline.
template <class Sink>
class CFlattener {
public:
    /// Requests lines in `rcCells`, whose sides lie within 2^22 cells from 0.
    CFlattener(const CRect& rcCells, Sink& sink)
        : m_nLeft(Wide(rcCells.left - 1)), m_nTop(Wide(rcCells.top - 1)), m_nRight(Wide(rcCells.right + 1)),
          m_nBottom(Wide(rcCells.bottom + 1)), m_sink(sink) {}

    /// `points` in PolyBezier order, in eighths of a pixel; cell (0, 0) is the first of pixel
    /// (xOrigin, yOrigin).
    void Flatten(std::span<const CPoint> points, int64_t xOrigin, int64_t yOrigin) {
        // (v - origin * 8) * 16 / 8 cells: the division is exact.
        const auto map = [](int32_t n, int64_t nOrigin) {
            return (n - nOrigin * 8) * (int64_t{FILL_CELLS / 8} << CURVE_BITS);
        };
        TCurve curve;
        for (size_t i = 0; i < points.size(); ++i) {
            const size_t k = i == 0 ? 0 : (i - 1) % 3 + 1;
            curve.x[k] = map(points[i].x, xOrigin);
            curve.y[k] = map(points[i].y, yOrigin);
            if (k < 3) continue;
            const int64_t x = curve.x[3], y = curve.y[3];
            StretchHandles(curve);
            Follow(curve);
            curve.x[0] = x, curve.y[0] = y;
        }
    }

private:
    static constexpr int64_t MAX_SIDE = int64_t{128 * FILL_CELLS} << CURVE_BITS;

    static int64_t Wide(int32_t nCells) { return int64_t{nCells} << CURVE_BITS; }
    static int32_t ToLine(int64_t n) {
        constexpr int SHIFT = CURVE_BITS - LINE_BITS;
        return static_cast<int32_t>((n + (1 << (SHIFT - 1))) >> SHIFT);
    }

    // A straight line without handles needs no steps once its handles lie at its thirds.
    static void StretchHandles(TCurve& curve) {
        if (curve.x[0] != curve.x[1] || curve.y[0] != curve.y[1] || curve.x[2] != curve.x[3] ||
            curve.y[2] != curve.y[3])
            return;
        for (int64_t* p : {curve.x, curve.y}) {
            p[1] = Third(2 * p[0] + p[3]);
            p[2] = Third(p[0] + 2 * p[3]);
        }
    }
    // Rounded to the nearest.
    static int64_t Third(int64_t n) {
        const int64_t nRest = (n % 3 + 3) % 3;
        return (n - nRest) / 3 + (nRest == 2);
    }

    void Follow(const TCurve& curve) {
        const auto [nLeft, nRight] = std::minmax({curve.x[0], curve.x[1], curve.x[2], curve.x[3]});
        const auto [nTop, nBottom] = std::minmax({curve.y[0], curve.y[1], curve.y[2], curve.y[3]});
        if (nTop > m_nBottom || nBottom < m_nTop || nLeft > m_nRight) return;
        if (nRight < m_nLeft)
            FollowAside(curve);
        else if (nRight - nLeft > MAX_SIDE || nBottom - nTop > MAX_SIDE)
            Halve(curve);
        else
            Step(curve);
    }

    void FollowAside(const TCurve& curve) {
        const auto clip = [&](int64_t y) { return ToLine(std::clamp(y, m_nTop, m_nBottom)); };
        const int32_t anX[] = {ToLine(m_nLeft), ToLine(m_nLeft)};
        const int32_t anY[] = {clip(curve.y[0]), clip(curve.y[3])};
        m_sink.AddLines(anX, anY, 1);
    }

    void Halve(const TCurve& curve) {
        TCurve first, second;
        const auto halve = [](const int64_t* p, int64_t* pFirst, int64_t* pSecond) {
            pFirst[0] = p[0];
            pFirst[1] = (p[0] + p[1] + 1) >> 1;
            pFirst[2] = (p[0] + 2 * p[1] + p[2] + 2) >> 2;
            pFirst[3] = pSecond[0] = (p[0] + 3 * (p[1] + p[2]) + p[3] + 4) >> 3;
            pSecond[1] = (p[1] + 2 * p[2] + p[3] + 2) >> 2;
            pSecond[2] = (p[2] + p[3] + 1) >> 1;
            pSecond[3] = p[3];
        };
        halve(curve.x, first.x, second.x);
        halve(curve.y, first.y, second.y);
        Follow(first);
        Follow(second);
    }

    // Number of steps, 2^k or three times as many, such that the error, at most 3/4 of the longer second
    // difference / steps^2, is at most 3/16 of a cell.
    struct TStepCount {
        int64_t n;
        int k;

        explicit TStepCount(const TCurve& curve) {
            const auto length2 = [&](int i) {
                const int64_t x = curve.x[i] - 2 * curve.x[i + 1] + curve.x[i + 2];
                const int64_t y = curve.y[i] - 2 * curve.y[i + 1] + curve.y[i + 2];
                return x * x + y * y;
            };
            // d <= 2^CURVE_BITS / 4 * n^2, squared.
            constexpr int BITS = 2 * CURVE_BITS - 4;
            const int64_t nLength2 = std::max(length2(0), length2(1));
            const int nWidth = std::bit_width(static_cast<uint64_t>(nLength2));
            k = nWidth <= BITS ? 0 : (nWidth - BITS + 3) / 4;
            n = int64_t{1} << k;
            if (k >= 2 && nLength2 <= int64_t{81} << (BITS + 4 * (k - 2))) {
                k -= 2;
                n = int64_t{3} << k;
            }
        }
        bool IsThree() const { return n >> k == 3; }
    };

    // A coordinate at equal steps, by differences: exact, multiplied by steps^3, and never negative.
    struct TSteps {
        static constexpr int BIAS_BITS = 34;
        int64_t nAt, n1, n2, n3;

        TSteps(const int64_t* p, int64_t n) {
            const int64_t a = p[3] - 3 * (p[2] - p[1]) - p[0];
            const int64_t b = 3 * (p[0] - 2 * p[1] + p[2]) * n;
            const int64_t c = 3 * (p[1] - p[0]) * n * n;
            constexpr int64_t HALF = 1 << (CURVE_BITS - LINE_BITS - 1);
            nAt = (p[0] + (int64_t{1} << BIAS_BITS) + HALF) * n * n * n;
            n1 = a + b + c;
            n2 = 6 * a + 2 * b;
            n3 = 6 * a;
        }
        void Next() {
            nAt += n1;
            n1 += n2;
            n2 += n3;
        }
        template <bool bThree>
        int32_t Get(int nShift) const {
            const uint64_t u = static_cast<uint64_t>(nAt) >> nShift;
            return static_cast<int32_t>(static_cast<int64_t>(bThree ? u / 27 : u) -
                                        (int64_t{1} << (BIAS_BITS - CURVE_BITS + LINE_BITS)));
        }
    };

    void Step(const TCurve& curve) {
        const TStepCount count(curve);
        if (count.IsThree())
            Step<true>(curve, count);
        else
            Step<false>(curve, count);
    }

    template <bool bThree>
    void Step(const TCurve& curve, const TStepCount& count) {
        const int nShift = 3 * count.k + CURVE_BITS - LINE_BITS;
        TSteps x(curve.x, count.n);
        TSteps y(curve.y, count.n);
        std::array<int32_t, 33> anX, anY;
        anX[0] = x.template Get<bThree>(nShift);
        anY[0] = y.template Get<bThree>(nShift);
        for (int64_t nDone = 0; nDone < count.n;) {
            const auto nLines = static_cast<size_t>(std::min<int64_t>(count.n - nDone, anX.size() - 1));
            for (size_t i = 1; i <= nLines; ++i) {
                x.Next();
                y.Next();
                anX[i] = x.template Get<bThree>(nShift);
                anY[i] = y.template Get<bThree>(nShift);
            }
            m_sink.AddLines(anX.data(), anY.data(), nLines);
            anX[0] = anX[nLines];
            anY[0] = anY[nLines];
            nDone += static_cast<int64_t>(nLines);
        }
    }

    int64_t m_nLeft, m_nTop, m_nRight, m_nBottom; ///< segments beyond these limits are not followed
    Sink& m_sink;
};
