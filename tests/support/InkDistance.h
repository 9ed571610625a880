// How far the outline of a stroke is from the edge of the area that discs sweep, both ways.
#pragma once

#include "core/Bezier/Bezier.h"
#include "core/PathFit/CellGrid.h"
#include "core/PathFit/InkLine.h"

#include <numbers>
#include <span>
#include <unordered_map>
#include <vector>

/// Path units; as large as INK_FAR where nothing is near.
struct TInkDistance {
    double dMost = 0;   ///< the largest distance
    double dNearly = 0; ///< that of 99.9 % of the places
};

constexpr double INK_FAR = 256;

/// Ink that one of them has beside the other: the shape's edge outside the discs to their edge, places of the
/// discs outside the shape to its edge. Where both have ink there is no distance, so a slit that closes
/// counts by its width. The places are one path unit apart, inside the discs two. The shape is closed curves
/// of non-zero winding, of which each is filled; the discs are swept from one to the next. Discs that are too
/// thin to be seen, as at the ends of a stroke, need not be covered.
class CInkDistance {
public:
    CInkDistance(std::span<const TInkDisc> vLine, const std::vector<TPolyBezier>& vShape)
        : m_vLine(vLine), m_gridLine(BoxesOf(vLine), 8) {
        for (const TPolyBezier& vCurve : vShape) Flatten(vCurve);
        for (size_t n = 0; n < m_vChords.size(); ++n) {
            const auto [dLow, dHigh] = std::minmax(m_vChords[n].from.y, m_vChords[n].to.y);
            for (double d = std::floor(dLow); d <= dHigh; ++d) m_mapRows[d].push_back(n);
        }
        for (size_t i = 1; i < vLine.size() || i == 1; ++i) SampleDiscs(i - 1);
        for (const TChord& chord : m_vChords) SampleChord(chord);
    }

    TInkDistance Measure() const {
        // Where the shape is thinner than a path unit it is a line that fills nothing.
        std::vector<TInkVector> vChords;
        for (const TChord& chord : m_vChords) vChords.push_back(Mix(chord.from, chord.to, 0.5));
        const CCellGrid discs = GridOf(m_vDrawn), shape = GridOf(vChords);
        std::vector<double> vAll;
        for (const TInkVector pt : m_vDrawn) vAll.push_back(IsFilled(pt) ? 0 : NearestOf(vChords, shape, pt));
        for (const TInkVector pt : m_vOutline)
            vAll.push_back(IsDrawn(pt) ? 0 : NearestOf(m_vDrawn, discs, pt));
        for (const TInkVector pt : m_vInside)
            if (!IsFilled(pt)) vAll.push_back(NearestOf(vChords, shape, pt));
        if (vAll.empty()) return {};
        std::sort(vAll.begin(), vAll.end());
        return {vAll.back(), vAll[(vAll.size() - 1) * 999 / 1000]};
    }
    /// The places on the drawn area's edge, and on the shape's.
    const std::vector<TInkVector>& GetDrawn() const { return m_vDrawn; }
    const std::vector<TInkVector>& GetOutline() const { return m_vOutline; }

private:
    struct TChord {
        TInkVector from;
        TInkVector to;
        int nCurve;
    };
    static TInkVector At(const TInkDisc& disc) { return {disc.x, disc.y}; }
    static std::vector<TInkBox> BoxesOf(std::span<const TInkDisc> vLine) {
        std::vector<TInkBox> vBoxes;
        for (size_t i = 0; i < vLine.size(); ++i) {
            const TInkDisc& next = vLine[std::min(i + 1, vLine.size() - 1)];
            vBoxes.push_back(TInkBox{At(vLine[i]), At(vLine[i])}
                                 .Grown(vLine[i].dHalf)
                                 .Union(TInkBox{At(next), At(next)}.Grown(next.dHalf)));
        }
        return vBoxes;
    }
    static CCellGrid GridOf(const std::vector<TInkVector>& vPoints) {
        std::vector<TInkBox> vBoxes;
        for (const TInkVector pt : vPoints) vBoxes.push_back({pt, pt});
        return CCellGrid(vBoxes, 4);
    }
    static double NearestOf(const std::vector<TInkVector>& vPoints, const CCellGrid& grid, TInkVector pt) {
        for (double dReach = 4; dReach <= INK_FAR; dReach *= 4) {
            double dBest = dReach;
            grid.Visit(TInkBox{pt, pt}.Grown(dReach), [&](uint32_t n) {
                dBest = std::min(dBest, LengthOf(vPoints[n] - pt));
                return false;
            });
            if (dBest < dReach) return dBest;
        }
        return INK_FAR;
    }
    // The area between a disc and the next is that of all discs between them.
    bool IsDrawn(TInkVector pt) const {
        constexpr double EDGE = 0.01;
        return m_gridLine.Visit({pt, pt}, [&](uint32_t n) {
            const TInkDisc& a = m_vLine[n];
            const TInkDisc& b = m_vLine[std::min<size_t>(n + 1, m_vLine.size() - 1)];
            const TInkVector way = At(b) - At(a);
            const double dSquare = Dot(way, way);
            const double t = dSquare > 0 ? std::clamp(Dot(pt - At(a), way) / dSquare, 0.0, 1.0) : 0;
            return LengthOf(At(a) + way * t - pt) < a.dHalf + (b.dHalf - a.dHalf) * t - EDGE;
        });
    }
    void SampleDiscs(size_t i) {
        const TInkDisc& a = m_vLine[i];
        const TInkDisc& b = m_vLine[std::min(i + 1, m_vLine.size() - 1)];
        // Of discs that lie within a path unit, as of a slow pen, one is enough.
        const bool bLast = i + 2 >= m_vLine.size();
        if (i > 0 && !bLast && LengthOf(At(a) - m_ptSampled) < 0.8 && a.dHalf <= m_dSampled) return;
        m_ptSampled = At(a);
        m_dSampled = a.dHalf;
        constexpr double FAINT = 0.8;
        if (std::min(a.dHalf, b.dHalf) < FAINT) return;
        const int nParts = static_cast<int>(LengthOf(At(b) - At(a))) + 1;
        const TInkVector across = Perpendicular(UnitOf(At(b) - At(a), {1, 0}));
        for (double d = 1 - a.dHalf; d < a.dHalf; d += 2) m_vInside.push_back(At(a) + across * d);
        // Two of the directions touch the area's edge.
        const double dLength = LengthOf(At(b) - At(a));
        const double dSlope = dLength > 0 ? std::clamp((b.dHalf - a.dHalf) / dLength, -1.0, 1.0) : 0;
        const TInkVector back = Perpendicular(across) * dSlope,
                         aside = across * std::sqrt(1 - dSlope * dSlope);
        for (int n = 0; n < nParts; ++n) {
            const double t = static_cast<double>(n) / nParts;
            const double dHalf = a.dHalf + (b.dHalf - a.dHalf) * t;
            for (const TInkVector direction : {back + aside, back - aside})
                if (const TInkVector pt = Mix(At(a), At(b), t) + direction * dHalf; !IsDrawn(pt))
                    m_vDrawn.push_back(pt);
            const int nTurns = static_cast<int>(dHalf * 2 * std::numbers::pi / 0.75) + 8;
            for (int k = 0; k < nTurns; ++k) {
                const double dAngle = 2 * std::numbers::pi * k / nTurns;
                const TInkVector pt =
                    Mix(At(a), At(b), t) + TInkVector{std::cos(dAngle), std::sin(dAngle)} * dHalf;
                if (!IsDrawn(pt)) m_vDrawn.push_back(pt);
            }
        }
        if (i + 2 == m_vLine.size()) SampleDiscs(i + 1);
    }
    void Flatten(const TPolyBezier& vCurve) {
        for (size_t i = 0; i + 3 < vCurve.size(); i += 3) {
            const TInkVector p0 = ToVector(vCurve[i]), p1 = ToVector(vCurve[i + 1]),
                             p2 = ToVector(vCurve[i + 2]), p3 = ToVector(vCurve[i + 3]);
            const int nParts =
                static_cast<int>(std::min(LengthOf(p1 - p0) + LengthOf(p2 - p1) + LengthOf(p3 - p2), 1e4)) +
                1;
            TInkVector from = p0;
            for (int n = 1; n <= nParts; ++n) {
                const double t = static_cast<double>(n) / nParts, s = 1 - t;
                const TInkVector to =
                    p0 * (s * s * s) + p1 * (3 * s * s * t) + p2 * (3 * s * t * t) + p3 * (t * t * t);
                if (LengthOf(to - from) > 0) m_vChords.push_back({from, to, m_nCurves});
                from = to;
            }
        }
        ++m_nCurves;
    }
    // By the crossings of the line to the left.
    bool IsFilled(TInkVector pt) const {
        std::vector<int> vWinding(static_cast<size_t>(m_nCurves));
        const auto it = m_mapRows.find(std::floor(pt.y));
        if (it == m_mapRows.end()) return false;
        for (const size_t n : it->second) {
            const auto& [from, to, nCurve] = m_vChords[n];
            if ((from.y <= pt.y) == (to.y <= pt.y)) continue;
            if (from.x + (to.x - from.x) * (pt.y - from.y) / (to.y - from.y) >= pt.x) continue;
            vWinding[static_cast<size_t>(nCurve)] += from.y <= pt.y ? 1 : -1;
        }
        return std::any_of(vWinding.begin(), vWinding.end(), [](int n) { return n != 0; });
    }
    void SampleChord(const TChord& chord) {
        const TInkVector middle = Mix(chord.from, chord.to, 0.5);
        const TInkVector aside = Perpendicular(UnitOf(chord.to - chord.from, {})) * 0.05;
        if (IsFilled(middle + aside) != IsFilled(middle - aside)) m_vOutline.push_back(middle);
    }

    std::span<const TInkDisc> m_vLine;
    CCellGrid m_gridLine;
    std::vector<TChord> m_vChords;
    int m_nCurves = 0;
    std::unordered_map<double, std::vector<size_t>>
        m_mapRows;          ///< chords by the rows of one unit that they cross
    TInkVector m_ptSampled; ///< the disc that was sampled last
    double m_dSampled = 0;
    std::vector<TInkVector> m_vDrawn;
    std::vector<TInkVector> m_vInside; ///< the discs
    std::vector<TInkVector> m_vOutline;
};
