#include "core/PathFit/InkArea.h"

#include <algorithm>
#include <limits>

namespace {

/// Stretches of a block: a place is looked for in blocks first.
constexpr size_t BLOCK = 8;
constexpr double LEAST_CELL = 8;
/// The way on both sides of a block belongs to its surroundings so far, in half-widths, unless it bends by
/// more, as a cosine.
constexpr double ALONE = 6;
constexpr double MOST_BEND = 0.3;

double DistanceFromLine(TInkVector from, TInkVector to, TInkVector pt) {
    const TInkVector way = to - from;
    const double dSquare = Dot(way, way);
    const double t = dSquare > 0 ? std::clamp(Dot(pt - from, way) / dSquare, 0.0, 1.0) : 0;
    return LengthOf(from + way * t - pt);
}

// The blocks' numbers of points: each block begins at the last point of the one before.
template <class Visitor>
void VisitBlocks(const TInkWay& vWay, Visitor visit) {
    for (size_t idx = 0; idx + 1 < vWay.size(); idx += BLOCK)
        visit(idx, std::min(idx + BLOCK, vWay.size() - 1));
}

std::vector<TInkBox> BoxesOf(const TInkWay& vWay, double dMost) {
    std::vector<TInkBox> vBoxes;
    vBoxes.reserve(vWay.size() / BLOCK + 1);
    VisitBlocks(vWay, [&](size_t idxFirst, size_t idxLast) {
        TInkBox box{vWay[idxFirst].pt, vWay[idxFirst].pt};
        for (size_t i = idxFirst; i <= idxLast; ++i)
            box = box.Union(TInkBox{vWay[i].pt, vWay[i].pt}.Grown(vWay[i].dHalf + dMost));
        vBoxes.push_back(box);
    });
    return vBoxes;
}

double CellFor(const TInkWay& vWay, double dMost) {
    double dCell = LEAST_CELL;
    for (const TWayPoint& point : vWay) dCell = std::max(dCell, (point.dHalf + dMost) / 3);
    return dCell;
}

} // namespace

CInkArea::TStretch CInkArea::StretchOf(TInkVector from, TInkVector to, double dHalf, double dMore) {
    const TInkVector way = to - from;
    const double dSquare = Dot(way, way);
    return {from, way, dSquare > 0 ? 1 / dSquare : 0, dHalf, dMore};
}

bool CInkArea::TStretch::HasNear(TInkVector pt, double d) const {
    const TInkVector off = pt - from;
    const double t = std::clamp(Dot(off, way) * dInverse, 0.0, 1.0);
    const TInkVector away = off - way * t;
    const double dReach = dHalf + dMore * t + d;
    return dReach >= 0 && Dot(away, away) <= dReach * dReach;
}

double CInkArea::TStretch::DepthAt(TInkVector pt) const {
    const TInkVector off = pt - from;
    const double t = std::clamp(Dot(off, way) * dInverse, 0.0, 1.0);
    return dHalf + dMore * t - LengthOf(off - way * t);
}

CInkArea::CInkArea(const TInkWay& vWay, double dMost) : m_grid(BoxesOf(vWay, dMost), CellFor(vWay, dMost)) {
    m_vStretches.reserve(vWay.size());
    for (size_t i = 1; i < vWay.size(); ++i)
        m_vStretches.push_back(
            StretchOf(vWay[i - 1].pt, vWay[i].pt, vWay[i - 1].dHalf, vWay[i].dHalf - vWay[i - 1].dHalf));
    m_vBlocks.reserve(vWay.size() / BLOCK + 1);
    VisitBlocks(vWay, [&](size_t idxFirst, size_t idxLast) {
        const TInkVector from = vWay[idxFirst].pt, to = vWay[idxLast].pt;
        double dReach = 0;
        for (size_t i = idxFirst; i <= idxLast; ++i)
            dReach = std::max(dReach, vWay[i].dHalf + DistanceFromLine(from, to, vWay[i].pt));
        m_vBlocks.push_back(StretchOf(from, to, dReach, 0));
    });
    FindAlone(vWay, dMost);
}

void CInkArea::FindAlone(const TInkWay& vWay, double dMost) {
    const std::vector<TInkBox> vBoxes = BoxesOf(vWay, dMost);
    double dLargest = LEAST_CELL;
    for (const TInkBox& box : vBoxes)
        dLargest = std::max({dLargest, box.high.x - box.low.x, box.high.y - box.low.y});
    const CCellGrid grid(vBoxes, dLargest);
    const auto lengthAt = [&](size_t nBlock) {
        return vWay[std::min(nBlock * BLOCK, vWay.size() - 1)].dLength;
    };
    const auto isBent = [&](size_t n, size_t m) {
        const TInkVector a = m_vBlocks[n].way, b = m_vBlocks[m].way;
        return Dot(a, b) < MOST_BEND * LengthOf(a) * LengthOf(b);
    };
    m_vAlone.resize(vBoxes.size());
    for (size_t n = 0; n < vBoxes.size(); ++n) {
        const double dReach = ALONE * (m_vBlocks[n].dHalf + dMost);
        size_t nFirst = n, nEnd = n + 1;
        bool bAlone = true;
        while (bAlone && nFirst > 0 && lengthAt(n) - lengthAt(nFirst) < dReach) bAlone = !isBent(n, --nFirst);
        while (bAlone && nEnd < vBoxes.size() && lengthAt(nEnd) - lengthAt(n + 1) < dReach)
            bAlone = !isBent(n, nEnd++);
        m_vAlone[n] = bAlone && !grid.Visit(vBoxes[n], [&](size_t m) {
            return (m < nFirst || m >= nEnd) && vBoxes[m].Meets(vBoxes[n]);
        });
    }
}

bool CInkArea::IsAlone(size_t idx) const { return m_vAlone[std::min(idx / BLOCK, m_vAlone.size() - 1)]; }

template <class Visitor>
bool CInkArea::VisitNear(TInkVector pt, double d, Visitor visit) const {
    constexpr double ROUNDING = 1e-6;
    return m_grid.Visit({pt, pt}, [&](size_t nBlock) {
        if (!m_vBlocks[nBlock].HasNear(pt, d + ROUNDING)) return false;
        const size_t nEnd = std::min((nBlock + 1) * BLOCK, m_vStretches.size());
        for (size_t n = nBlock * BLOCK; n < nEnd; ++n)
            if (m_vStretches[n].HasNear(pt, d)) return visit(n);
        return false;
    });
}

std::optional<double> CInkArea::DepthAt(TInkVector pt, double dLeast) const {
    std::optional<double> depth;
    VisitNear(pt, -dLeast, [&](size_t n) {
        depth = m_vStretches[n].DepthAt(pt);
        return true;
    });
    return depth;
}

bool CInkArea::HasNear(TInkVector pt, double d, size_t& idxFound) const {
    const auto isNear = [&](size_t n) {
        if (!m_vStretches[n].HasNear(pt, d)) return false;
        idxFound = n;
        return true;
    };
    const auto found = [&](size_t n) {
        idxFound = n;
        return true;
    };
    return VisitAround(idxFound, m_vStretches.size(), isNear) || VisitNear(pt, d, found);
}

size_t CInkArea::NearestEdge(TInkVector pt) const {
    size_t idxBest = 0;
    double dBest = std::numeric_limits<double>::max();
    for (size_t i = 0; i < m_vStretches.size(); ++i) {
        const double d = std::abs(m_vStretches[i].DepthAt(pt));
        if (d >= dBest) continue;
        dBest = d;
        idxBest = i;
    }
    return idxBest;
}
