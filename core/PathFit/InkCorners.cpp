#include "core/PathFit/InkCorners.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace {

constexpr double CORNER_REACH = 1.5;   ///< of the directions at a corner, in tolerances
constexpr double CORNER_WIDTHS = 0.15; ///< the same, in half-widths
constexpr double LEAST_REACH = 4;      ///< path units: nearer places are too coarse for directions
constexpr double CORNER_COSINE = 0.45; ///< of the least turn
constexpr double LARGEST_WINDOW = 24;  ///< to each side, in tolerances
constexpr double SMALLEST_WINDOW = 1.5;
constexpr double OFF_PARABOLA = 0.5; ///< tolerances

// The way's unit directions to a point and from it.
struct TTurn {
    TInkVector in;
    TInkVector out;
    double GetCosine() const { return Dot(in, out); }
};

// Over a reach to both sides; nullopt where the way is too short to tell.
std::optional<TTurn> TurnAt(const TInkWay& vWay, size_t idx, double dReach) {
    const auto isAway = [&](const TWayPoint& point) { return LengthOf(point.pt - vWay[idx].pt) >= dReach; };
    const auto it = vWay.begin() + static_cast<std::ptrdiff_t>(idx);
    const auto itAfter = std::find_if(it, vWay.end(), isAway);
    const auto itBefore = std::find_if(std::make_reverse_iterator(it), vWay.rend(), isAway);
    if (itAfter == vWay.end() || itBefore == vWay.rend()) return {};
    return TTurn{UnitOf(vWay[idx].pt - itBefore->pt, {}), UnitOf(itAfter->pt - vWay[idx].pt, {})};
}

// Of neighbouring points that turn, the one that lies farthest out where they turn most.
class CCornerPoints {
public:
    void Add(size_t idx, const TTurn& turn) {
        if (m_vPoints.empty() || turn.GetCosine() < m_sharpest.GetCosine()) m_sharpest = turn;
        m_vPoints.push_back(idx);
    }
    bool IsEmpty() const { return m_vPoints.empty(); }
    size_t GetFirst() const { return m_vPoints.front(); }
    size_t GetTip(const TInkWay& vWay) const {
        const TInkVector outward = m_sharpest.in - m_sharpest.out;
        return *std::ranges::max_element(m_vPoints, {},
                                         [&](size_t idx) { return Dot(vWay[idx].pt, outward); });
    }

private:
    std::vector<size_t> m_vPoints;
    TTurn m_sharpest{};
};

// The least squares of both coordinates around a point.
class CParabolas {
public:
    CParabolas(const TInkWay& vWay, size_t idx, size_t idxFirst, size_t idxLast)
        : m_vWay(vWay), m_idxFirst(idxFirst), m_idxLast(idxLast), m_dAt(vWay[idx].dLength),
          m_pt(vWay[idx].pt) {
        // Lengths are scaled to 1, which keeps the sums alike.
        m_dScale = 1 / std::max(vWay[idxLast].dLength - m_dAt, m_dAt - vWay[idxFirst].dLength);
    }

    // False when no parabola stays within the distance of four of the points. Of a parabola the third divided
    // difference is zero.
    bool CanBeWithin(double dOff) const {
        constexpr size_t POINTS = 4;
        TInkVector difference;
        double dMost = 0;
        const auto idxOf = [&](size_t n) { return m_idxFirst + (m_idxLast - m_idxFirst) * n / (POINTS - 1); };
        for (size_t n = 0; n < POINTS; ++n) {
            double dProduct = 1;
            for (size_t k = 0; k < POINTS; ++k)
                if (k != n) dProduct *= (m_vWay[idxOf(n)].dLength - m_vWay[idxOf(k)].dLength) * m_dScale;
            difference = difference + (m_vWay[idxOf(n)].pt - m_pt) * (1 / dProduct);
            dMost += dOff / std::abs(dProduct);
        }
        constexpr double ROUNDING = 1 + 1e-9;
        return Dot(difference, difference) <= dMost * dMost * ROUNDING;
    }
    bool Solve() {
        std::array<double, 5> adS{};
        std::array<TInkVector, 3> aSums{};
        for (size_t i = m_idxFirst; i <= m_idxLast; ++i) {
            const double s = (m_vWay[i].dLength - m_dAt) * m_dScale;
            const TInkVector pt = m_vWay[i].pt - m_pt;
            const double s2 = s * s;
            adS[0] += 1, adS[1] += s, adS[2] += s2, adS[3] += s2 * s, adS[4] += s2 * s2;
            aSums[0] = aSums[0] + pt, aSums[1] = aSums[1] + pt * s, aSums[2] = aSums[2] + pt * s2;
        }
        const double a = adS[2] * adS[4] - adS[3] * adS[3];
        const double b = adS[2] * adS[3] - adS[1] * adS[4];
        const double c = adS[1] * adS[3] - adS[2] * adS[2];
        const double dDet = adS[0] * a + adS[1] * b + adS[2] * c;
        if (!(dDet > 1e-9 * adS[0] * adS[2] * adS[4])) return false;
        const double e = adS[0] * adS[4] - adS[2] * adS[2];
        const double f = adS[1] * adS[2] - adS[0] * adS[3];
        const double g = adS[0] * adS[2] - adS[1] * adS[1];
        m_a0 = (aSums[0] * a + aSums[1] * b + aSums[2] * c) * (1 / dDet);
        m_a1 = (aSums[0] * b + aSums[1] * e + aSums[2] * f) * (1 / dDet);
        m_a2 = (aSums[0] * c + aSums[1] * f + aSums[2] * g) * (1 / dDet);
        return Dot(m_a1, m_a1) > 0;
    }
    bool IsWithin(double dOff) const {
        for (size_t i = m_idxFirst; i <= m_idxLast; ++i) {
            const double s = (m_vWay[i].dLength - m_dAt) * m_dScale;
            const TInkVector off = m_a0 + m_a1 * s + m_a2 * (s * s) - (m_vWay[i].pt - m_pt);
            if (Dot(off, off) > dOff * dOff) return false;
        }
        return true;
    }
    TWayTangent Get() const { return {Nearest(m_pt + m_a0), UnitOf(m_a1, {1, 0})}; }

private:
    const TInkWay& m_vWay;
    size_t m_idxFirst, m_idxLast;
    double m_dAt, m_dScale = 1;
    TInkVector m_pt;
    TInkVector m_a0, m_a1, m_a2;
};

} // namespace

std::vector<size_t> FindCorners(const TInkWay& vWay, double dTolerance) {
    const auto reachAt = [&](size_t i) {
        return std::max({CORNER_REACH * dTolerance, LEAST_REACH, CORNER_WIDTHS * vWay[i].dHalf});
    };
    std::vector<size_t> vCorners;
    CCornerPoints points;
    const auto endCorner = [&] {
        if (!points.IsEmpty()) vCorners.push_back(std::exchange(points, {}).GetTip(vWay));
    };
    for (size_t i = 1; i + 1 < vWay.size(); ++i) {
        const double dReach = reachAt(i);
        const auto turn = TurnAt(vWay, i, dReach);
        if (!turn || turn->GetCosine() > CORNER_COSINE) continue;
        if (!points.IsEmpty() && vWay[i].dLength - vWay[points.GetFirst()].dLength > 2 * dReach) endCorner();
        points.Add(i, *turn);
    }
    endCorner();
    return vCorners;
}

TWayTangent TangentAt(const TInkWay& vWay, size_t idx, size_t idxFirst, size_t idxLast, double dTolerance) {
    const double dAt = vWay[idx].dLength;
    const auto it = vWay.begin();
    const auto at = [&](size_t i) { return it + static_cast<std::ptrdiff_t>(i); };
    for (double d = LARGEST_WINDOW; d >= SMALLEST_WINDOW; d /= 2) {
        const double dReach = d * dTolerance;
        const auto isBefore = [&](const TWayPoint& point) { return point.dLength < dAt - dReach; };
        const auto isWithin = [&](const TWayPoint& point) { return point.dLength <= dAt + dReach; };
        const auto idxBegin = static_cast<size_t>(std::partition_point(at(idxFirst), at(idx), isBefore) - it);
        const auto idxEnd = static_cast<size_t>(std::partition_point(at(idx), at(idxLast), isWithin) - it);
        if (idxEnd - idxBegin < 3) break;
        CParabolas parabolas(vWay, idx, idxBegin, idxEnd);
        if (!parabolas.CanBeWithin(OFF_PARABOLA * dTolerance)) continue;
        if (parabolas.Solve() && parabolas.IsWithin(OFF_PARABOLA * dTolerance)) return parabolas.Get();
    }
    const size_t idxBefore = idx > idxFirst ? idx - 1 : idx;
    const size_t idxAfter = idx < idxLast ? idx + 1 : idx;
    return {Nearest(vWay[idx].pt), UnitOf(vWay[idxAfter].pt - vWay[idxBefore].pt, {1, 0})};
}
