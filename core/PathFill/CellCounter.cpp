#include "core/PathFill/CellCounter.h"

#include <climits>
#include <cstring>
#include <numeric>

void CCellCounter::Begin(CMonotoneChains& chains, int32_t nFirst, int32_t nEnd) {
    m_pChains = &chains;
    m_nFirst = nFirst;
    m_nEnd = nEnd;
    const auto& vChains = chains.GetChains();
    m_vOrder.resize(vChains.size());
    std::iota(m_vOrder.begin(), m_vOrder.end(), 0u);
    std::sort(m_vOrder.begin(), m_vOrder.end(),
              [&](uint32_t a, uint32_t b) { return vChains[a].yTop < vChains[b].yTop; });
    m_nWaiting = 0;
    m_vActive.clear();
    // A crossing at the right end still has a pixel of its own and one behind.
    m_vDifference.resize(std::max(m_vDifference.size(), static_cast<size_t>(nEnd) + 4));
}

int32_t CCellCounter::NextRow(int32_t y) const {
    if (!m_vActive.empty()) return y;
    if (m_nWaiting == m_vOrder.size()) return INT32_MAX;
    // Divided towards the top.
    return std::max(y, m_pChains->GetChains()[m_vOrder[m_nWaiting]].yTop >> 4);
}

bool CCellCounter::Cross(TChain& chain, int32_t y, TCrossings& crossings) {
    const int32_t yBase = y * ROWS;
    const int32_t yEnd = std::min(chain.yEnd, yBase + ROWS);
    int32_t yCell = std::max(chain.yTop, yBase);
    crossings.nTop = yCell - yBase;
    crossings.nEnd = yEnd - yBase;
    crossings.nDirection = chain.nDirection;
    crossings.nMin = INT32_MAX;
    crossings.nMax = INT32_MIN;
    int32_t* pCell = crossings.anCell.data() + crossings.nTop;
    for (;;) {
        TChainLine& line = m_pChains->GetLine(chain.nCurrent);
        const int32_t yStop = std::min(line.yEnd, yEnd);
        const int32_t* pFirst = pCell;
        int64_t nX = line.nX;
        for (; yCell < yStop; ++yCell, nX += line.nStep)
            *pCell++ = static_cast<int32_t>(nX >> CMonotoneChains::CROSSING_BITS);
        line.nX = nX;
        crossings.nMin = std::min({crossings.nMin, *pFirst, pCell[-1]});
        crossings.nMax = std::max({crossings.nMax, *pFirst, pCell[-1]});
        if (line.yEnd == yStop) chain.nCurrent += static_cast<size_t>(chain.nDirection);
        if (yCell == yEnd) break;
    }
    const int32_t nLeft = m_nFirst * FILL_CELLS;
    const int32_t nRight = m_nEnd * FILL_CELLS;
    if (crossings.nMin < nLeft || crossings.nMax > nRight) {
        for (int32_t n = crossings.nTop; n < crossings.nEnd; ++n)
            crossings.anCell[n] = std::clamp(crossings.anCell[n], nLeft, nRight);
        crossings.nMin = std::clamp(crossings.nMin, nLeft, nRight);
        crossings.nMax = std::clamp(crossings.nMax, nLeft, nRight);
    }
    return yEnd == chain.yEnd;
}

void CCellCounter::Count(int32_t y, CCountRow& row) {
    auto& vChains = m_pChains->GetChains();
    while (m_nWaiting < m_vOrder.size() && vChains[m_vOrder[m_nWaiting]].yTop < (y + 1) * ROWS)
        m_vActive.push_back(m_vOrder[m_nWaiting++]);
    if (m_vCrossings.size() < m_vActive.size()) m_vCrossings.resize(m_vActive.size() * 2);
    size_t nKept = 0;
    const size_t nCrossings = m_vActive.size();
    m_vSorted.resize(nCrossings);
    for (size_t n = 0; n < nCrossings; ++n) {
        m_vSorted[n] = static_cast<uint32_t>(n);
        const uint32_t nChain = m_vActive[n];
        if (!Cross(vChains[nChain], y, m_vCrossings[n])) m_vActive[nKept++] = nChain;
    }
    m_vActive.resize(nKept);
    std::sort(m_vSorted.begin(), m_vSorted.end(),
              [&](uint32_t a, uint32_t b) { return m_vCrossings[a].nMin < m_vCrossings[b].nMin; });

    m_anWinding.fill(0);
    m_bEven = true;
    m_nCount = 0;
    m_nNext = m_nChanged = nCrossings ? m_vCrossings[m_vSorted[0]].nMin >> 4 : m_nEnd;
    const int32_t nFirst = m_nNext;
    for (size_t n = 0; n < nCrossings;) {
        const TCrossings& first = m_vCrossings[m_vSorted[n]];
        int32_t nMax = first.nMax;
        size_t nTo = n + 1;
        for (; nTo < nCrossings && m_vCrossings[m_vSorted[nTo]].nMin <= nMax; ++nTo)
            nMax = std::max(nMax, m_vCrossings[m_vSorted[nTo]].nMax);
        const int32_t nPixel = first.nMin >> 4;
        Reach(nPixel, row);
        // The crossing's pixel, one behind, and the filter's neighbours of both.
        m_nChanged = std::max(m_nChanged, (nMax >> 4) + 2);
        row.Mark(std::max(nPixel - 1, 0), m_nChanged);
        if (nTo == n + 1)
            CountAlone(first);
        else
            CountGroup(n, nTo);
        n = nTo;
    }
    // A shape that goes on beyond the end has its last value beside what lies there.
    const int32_t nEnd = m_nChanged;
    Reach(std::max(m_nEnd, m_nChanged), row);
    if (m_nCount != 0) row.Mark(m_nEnd - 1, m_nEnd - 1);
    row.SetExtent(nFirst, m_nCount != 0 ? m_nEnd : std::min(nEnd, m_nEnd));
    for (int32_t n = m_nEnd; n < m_nNext; ++n) row.GetValues()[n] = 0;
}

// Writes the pixels before `nPixel`, unless crossings before it still reach behind it.
void CCellCounter::Reach(int32_t nPixel, CCountRow& row) {
    if (nPixel < m_nChanged) return;
    uint8_t* pValues = row.GetValues();
    int16_t* pDifference = m_vDifference.data() + 1;
    for (; m_nNext < m_nChanged; ++m_nNext) {
        m_nCount += pDifference[m_nNext];
        pDifference[m_nNext] = 0;
        pValues[m_nNext] = static_cast<uint8_t>(std::min(m_nCount, 255));
    }
    if (m_nCount != 0)
        std::memset(pValues + m_nNext, std::min(m_nCount, 255), static_cast<size_t>(nPixel - m_nNext));
    m_nNext = m_nChanged = nPixel;
}

void CCellCounter::AddCrossing(int32_t nCell, int32_t nSign) {
    int16_t* pDifference = m_vDifference.data() + 1 + (nCell >> 4);
    const int32_t nBehind = nCell & (FILL_CELLS - 1);
    pDifference[0] = static_cast<int16_t>(pDifference[0] + nSign * (FILL_CELLS - nBehind));
    pDifference[1] = static_cast<int16_t>(pDifference[1] + nSign * nBehind);
}

void CCellCounter::CountAlone(const TCrossings& crossings) {
    const auto sign = [](int32_t nBefore, int32_t nAfter) { return (nAfter != 0) - (nBefore != 0); };
    if (m_bEven && crossings.nEnd - crossings.nTop == ROWS) {
        const int32_t nBefore = m_anWinding[0];
        m_anWinding[0] += crossings.nDirection;
        if (const int32_t nSign = sign(nBefore, m_anWinding[0])) CountWhole(crossings, nSign);
        return;
    }
    Spread();
    for (int32_t n = crossings.nTop; n < crossings.nEnd; ++n) {
        int32_t& nWinding = m_anWinding[n];
        const int32_t nBefore = nWinding;
        nWinding += crossings.nDirection;
        if (const int32_t nSign = sign(nBefore, nWinding)) AddCrossing(crossings.anCell[n], nSign);
    }
    Gather();
}

// Sixteen crossings of one sign. Steep ones lie in few pixels: then the cells behind all of them are counted
// a pixel at a time.
void CCellCounter::CountWhole(const TCrossings& crossings, int32_t nSign) {
    constexpr int32_t STEEP = 4;
    const int32_t nFirst = crossings.nMin >> 4;
    const int32_t nLast = crossings.nMax >> 4;
    if (nLast - nFirst >= STEEP) {
        for (const int32_t nCell : crossings.anCell) AddCrossing(nCell, nSign);
        return;
    }
    std::array<int16_t, ROWS> anRest; // cells from the crossing to the pixel's right side
    for (int32_t n = 0; n < ROWS; ++n)
        anRest[n] = static_cast<int16_t>((nFirst + 1) * FILL_CELLS - crossings.anCell[n]);
    int16_t* pDifference = m_vDifference.data() + 1 + nFirst;
    int32_t nBefore = 0;
    for (int32_t nPixel = nFirst; nPixel <= nLast; ++nPixel) {
        int16_t nSet = 0;
        for (int16_t& nRest : anRest) {
            nSet = static_cast<int16_t>(nSet + std::clamp<int16_t>(nRest, 0, FILL_CELLS));
            nRest = static_cast<int16_t>(nRest + FILL_CELLS);
        }
        *pDifference = static_cast<int16_t>(*pDifference + nSign * (nSet - nBefore));
        ++pDifference;
        nBefore = nSet;
    }
    *pDifference = static_cast<int16_t>(*pDifference + nSign * (ROWS * FILL_CELLS - nBefore));
}

// Chains that may cross one another: row by row of cells, in the order of the crossings there.
void CCellCounter::CountGroup(size_t nFrom, size_t nTo) {
    Spread();
    for (int32_t nRow = 0; nRow < ROWS; ++nRow) {
        m_vKeys.clear();
        for (size_t n = nFrom; n < nTo; ++n) {
            const TCrossings& crossings = m_vCrossings[m_vSorted[n]];
            if (crossings.nTop <= nRow && nRow < crossings.nEnd)
                m_vKeys.push_back(crossings.anCell[nRow] * 4 + crossings.nDirection + 1);
        }
        // At one cell the order does not matter: what begins there and ends there is no cell wide.
        std::sort(m_vKeys.begin(), m_vKeys.end());
        int32_t nWinding = m_anWinding[nRow];
        for (const int32_t nKey : m_vKeys) {
            const bool bBefore = nWinding != 0;
            nWinding += (nKey & 3) - 1;
            if (const int32_t nSign = (nWinding != 0) - bBefore) AddCrossing(nKey >> 2, nSign);
        }
        m_anWinding[nRow] = nWinding;
    }
    Gather();
}

// While the winding number is even, only the first row's is kept.
void CCellCounter::Spread() {
    if (m_bEven) m_anWinding.fill(m_anWinding[0]);
    m_bEven = false;
}

void CCellCounter::Gather() {
    m_bEven = std::all_of(m_anWinding.begin(), m_anWinding.end(),
                          [&](int32_t nWinding) { return nWinding == m_anWinding[0]; });
}
