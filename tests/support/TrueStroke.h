// The area that a stroke covers, computed without outlines: its ribs, from side to side across the centre
// line, are so dense that the area between two neighbours is a plain quadrangle. Floating point throughout.
#pragma once

#include "core/PathObject/PathObjects.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

/// A plane of cells, CELLS by CELLS per pixel, that polygons are painted on.
class CTrueStroke {
public:
    static constexpr int CELLS = 4;
    static constexpr int STEPS = 1000;   ///< ribs per segment
    using TPoint = std::complex<double>; ///< path units

    /// Half-widths are the stream's own one, the ends flat and square. Only ribs from `tFirst` to `tLast`.
    CTrueStroke(const COpenPathStream& stream, CSize sz, uint32_t tFirst = 0, uint32_t tLast = UINT32_MAX)
        : m_nWidth(sz.cx * CELLS), m_nHeight(sz.cy * CELLS),
          m_vCells(static_cast<size_t>(m_nWidth) * static_cast<size_t>(m_nHeight)) {
        TOutlinePoints vAnchors;
        for (const auto& spPoint : stream.GetControlPoints())
            vAnchors.push_back(spPoint->At(STATE_COMMITTED));
        const double dWidth = stream.GetWidth();
        std::vector<TPoint> vLine, vDirections;
        for (size_t n = 1; n < vAnchors.size(); ++n)
            SampleSegment(SegmentOf(vAnchors[n - 1], vAnchors[n]), vLine, vDirections);
        if (vLine.empty()) return;
        const TPoint QUARTER(0, -1);
        const auto rib = [&](size_t n) {
            const TPoint across = vDirections[n] * QUARTER * dWidth;
            return std::array{vLine[n] + across, vLine[n] - across};
        };
        for (size_t n = 1; n < vLine.size(); ++n) {
            const double t = (n / (STEPS + 1) + n % (STEPS + 1) / double{STEPS}) * BEZIER_T_RESOLUTION;
            if (t < tFirst || t > tLast) continue;
            const auto a = rib(n - 1), b = rib(n);
            Paint({a[0], b[0], b[1], a[1]});
        }
    }

    /// The covered fraction of a pixel, 0 to 1.
    double At(int x, int y) const {
        int n = 0;
        for (int i = 0; i < CELLS * CELLS; ++i) n += IsSet(x * CELLS + i % CELLS, y * CELLS + i / CELLS);
        return n / double{CELLS * CELLS};
    }

private:
    bool IsSet(int x, int y) const { return m_vCells[static_cast<size_t>(y * m_nWidth + x)]; }
    // Paints a polygon by the even-odd rule.
    void Paint(const std::vector<TPoint>& vPoints) {
        double dTop = 1e9, dBottom = -1e9;
        for (const TPoint& pt : vPoints)
            dTop = std::min(dTop, pt.imag()), dBottom = std::max(dBottom, pt.imag());
        constexpr double CELL = 8.0 / CELLS;
        const int yEnd = std::min(m_nHeight - 1, static_cast<int>(dBottom / CELL));
        std::vector<double> vX;
        for (int y = std::max(0, static_cast<int>(dTop / CELL) - 1); y <= yEnd; ++y) {
            const double dY = (y + 0.5) * CELL;
            vX.clear();
            for (size_t n = 0; n < vPoints.size(); ++n) {
                TPoint a = vPoints[n], b = vPoints[(n + 1) % vPoints.size()];
                if (a.imag() > b.imag()) std::swap(a, b);
                if (a.imag() <= dY && dY < b.imag())
                    vX.push_back(a.real() + (b.real() - a.real()) * (dY - a.imag()) / (b.imag() - a.imag()));
            }
            std::sort(vX.begin(), vX.end());
            for (size_t n = 0; n + 1 < vX.size(); n += 2) {
                const int xEnd = std::min(m_nWidth, static_cast<int>(std::ceil(vX[n + 1] / CELL - 0.5)));
                for (int x = std::max(0, static_cast<int>(std::ceil(vX[n] / CELL - 0.5))); x < xEnd; ++x)
                    m_vCells[static_cast<size_t>(y * m_nWidth + x)] = true;
            }
        }
    }
    // A part in which the curve hardly moves takes the direction of the nearest place that moves.
    static void SampleSegment(const CBezier& bez, std::vector<TPoint>& vLine,
                              std::vector<TPoint>& vDirections) {
        constexpr double SURE = 12; // path units to the whole of the parameter
        const auto point = [](CPoint pt) { return TPoint(pt.x, pt.y); };
        const TPoint p[] = {point(bez.p0), point(bez.p1), point(bez.p2), point(bez.p3)};
        std::array<TPoint, STEPS + 1> aWays;
        for (int n = 0; n <= STEPS; ++n) {
            const double t = n / double{STEPS}, u = 1 - t;
            vLine.push_back(u * u * u * p[0] + 3 * u * u * t * p[1] + 3 * u * t * t * p[2] +
                            t * t * t * p[3]);
            aWays[static_cast<size_t>(n)] =
                3.0 * (u * u * (p[1] - p[0]) + 2 * u * t * (p[2] - p[1]) + t * t * (p[3] - p[2]));
        }
        for (int n = 0; n <= STEPS; ++n) {
            int nAway = 0;
            const auto isSure = [&](int k) { return k >= 0 && k <= STEPS && std::abs(aWays[k]) >= SURE; };
            while (nAway < STEPS && !isSure(n - nAway) && !isSure(n + nAway)) ++nAway;
            const TPoint way = aWays[isSure(n - nAway) ? n - nAway : std::min(n + nAway, STEPS)];
            vDirections.push_back(way / std::max(std::abs(way), 1e-9));
        }
    }
    int m_nWidth;
    int m_nHeight;
    std::vector<bool> m_vCells;
};
