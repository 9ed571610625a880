#include "core/PathFill/CellCounter.h"

#include <climits>

namespace {

int32_t SignOf(int32_t nBefore, int32_t nAfter) { return (nAfter != 0) - (nBefore != 0); }

} // namespace

void CCellCounter::Begin(const CMonotoneChains& chains, int32_t nFirst, int32_t nEnd) {
    m_pChains = &chains;
    m_nFirst = nFirst;
    m_nEnd = nEnd;
    m_vOrder.clear();
    size_t nSums = 0;
    for (const TChain& chain : chains.GetChains()) {
        const int32_t yWhole = (chain.yTop + ROWS - 1) >> 4;
        const int32_t yWholeEnd = std::max(chain.yEnd >> 4, yWhole);
        m_vOrder.push_back({&chain, yWhole, yWholeEnd, nSums});
        nSums += static_cast<size_t>(yWholeEnd - yWhole);
    }
    if (m_vSums.size() < nSums) m_vSums.resize(nSums);
    for (const TOrdered& ordered : m_vOrder) {
        if (ordered.yWhole == ordered.yWholeEnd) continue;
        const TChain& chain = *ordered.pChain;
        const int32_t* pCells = chains.GetCells(chain, ordered.yWhole * ROWS, (ordered.yWhole + 1) * ROWS);
        m_kernels.pSumBlocks(m_vSums.data() + ordered.nSums, pCells, chain.nDirection * ROWS,
                             static_cast<size_t>(ordered.yWholeEnd - ordered.yWhole));
    }
    std::sort(m_vOrder.begin(), m_vOrder.end(),
              [](const TOrdered& a, const TOrdered& b) { return a.pChain->yTop < b.pChain->yTop; });
    m_nWaiting = 0;
    m_yChanged = INT32_MIN;
    m_vActive.clear();
    // A crossing at the right end still affects its pixel and those behind.
    m_vDifference.resize(std::max(m_vDifference.size(), static_cast<size_t>(nEnd) + CROSSING_PIXELS + 2));
}

int32_t CCellCounter::NextRow(int32_t y) const {
    if (!m_vActive.empty()) return y;
    if (m_nWaiting == m_vOrder.size()) return INT32_MAX;
    return std::max(y, m_vOrder[m_nWaiting].pChain->yTop >> 4);
}

// The cell of a chain in row `y`.
void CCellCounter::Measure(TActive& active, int32_t y) {
    const TOrdered& ordered = *active.pOrdered;
    const TChain& chain = *ordered.pChain;
    const int32_t yTop = std::max(chain.yTop, y * ROWS);
    const int32_t yEnd = std::min(chain.yEnd, (y + 1) * ROWS);
    active.nTop = yTop - y * ROWS;
    active.nEnd = yEnd - y * ROWS;
    active.pCells = m_pChains->GetCells(chain, yTop, yEnd);
    if (yEnd - yTop == ROWS)
        active.sums = m_vSums[ordered.nSums + static_cast<size_t>(y - ordered.yWhole)];
    else
        active.sums = m_kernels.pSum(active.pCells, static_cast<size_t>(yEnd - yTop));
}

void CCellCounter::Count(int32_t y, CCountRow& row) {
    for (; m_nWaiting < m_vOrder.size() && m_vOrder[m_nWaiting].pChain->yTop < (y + 1) * ROWS; ++m_nWaiting) {
        m_vActive.push_back(
            {&m_vOrder[m_nWaiting], nullptr, 0, 0, m_vOrder[m_nWaiting].pChain->nDirection, {}});
        m_yChanged = y;
    }
    const int32_t yNext = (y + 1) * ROWS;
    bool bEnds = false;
    for (TActive& active : m_vActive) {
        Measure(active, y);
        bEnds = bEnds || active.pOrdered->pChain->yEnd <= yNext;
    }
    const auto lefter = [](const TActive& a, const TActive& b) { return a.sums.nMin < b.sums.nMin; };
    if (!std::is_sorted(m_vActive.begin(), m_vActive.end(), lefter))
        std::sort(m_vActive.begin(), m_vActive.end(), lefter);

    m_anWinding[0] = 0;
    m_bEven = true;
    m_nCount = 0;
    m_nNext = m_nChanged = m_nFirst;
    const auto isOther = [&](const TActive& active) {
        return active.pOrdered->pChain->uOutline != m_vActive.front().pOrdered->pChain->uOutline;
    };
    const bool bUnion = std::any_of(m_vActive.begin(), m_vActive.end(), isOther);
    if (bUnion) CountUnion(row);
    for (size_t n = bUnion ? m_vActive.size() : 0; n < m_vActive.size();) {
        const TActive& first = m_vActive[n];
        int32_t nMax = first.sums.nMax;
        size_t nTo = n + 1;
        for (; nTo < m_vActive.size() && m_vActive[nTo].sums.nMin <= nMax; ++nTo)
            nMax = std::max(nMax, m_vActive[nTo].sums.nMax);
        const bool bWhole = nTo == n + 1 && m_bEven && first.nEnd - first.nTop == ROWS;
        const int32_t nAfter = m_anWinding[0] + first.nDirection;
        if (bWhole && SignOf(m_anWinding[0], nAfter) == 0) {
            m_anWinding[0] = nAfter;
            n = nTo;
            continue;
        }
        const int32_t nPixel = first.sums.nMin >> 4;
        Reach(nPixel, row);
        const int32_t nNext = nTo < m_vActive.size() ? m_vActive[nTo].sums.nMin >> 4 : INT32_MAX;
        if (bWhole && m_nChanged == nPixel && nNext > (nMax >> 4) + 1 &&
            (nMax >> 4) - nPixel < CROSSING_PIXELS) {
            WriteEdge(first, row);
        } else {
            // The crossings' pixels, one behind, and the filter's neighbours of both.
            m_nChanged = std::max(m_nChanged, (nMax >> 4) + 2);
            row.Mark(std::max(nPixel - 1, 0), m_nChanged);
            if (nTo == n + 1 && m_bEven)
                CountAlone(first);
            else
                CountGroup(n, nTo, nMax);
        }
        n = nTo;
    }
    // A shape that continues beyond the end keeps its last value there.
    Reach(std::max(m_nEnd, m_nChanged), row);
    if (m_nCount != 0) row.Mark(m_nEnd - 1, m_nEnd - 1);
    for (int32_t n = m_nEnd; n < m_nNext; ++n) row.Set(n, 0);

    if (bEnds) {
        std::erase_if(m_vActive,
                      [&](const TActive& active) { return active.pOrdered->pChain->yEnd <= yNext; });
        m_yChanged = y;
    }
}

bool CCellCounter::GetEdges(int32_t y, int32_t nRows, std::vector<TFillEdge>& vEdges) const {
    vEdges.clear();
    if (m_vActive.empty() || m_yChanged >= y) return false;
    if (m_nWaiting < m_vOrder.size() && m_vOrder[m_nWaiting].pChain->yTop < (y + nRows) * ROWS) return false;
    int32_t nWinding = 0;
    int32_t nReached = 0;
    for (const TActive& active : m_vActive) {
        const TOrdered& ordered = *active.pOrdered;
        if (ordered.pChain->uOutline != m_vActive.front().pOrdered->pChain->uOutline) return false;
        if (y < ordered.yWhole || y + nRows > ordered.yWholeEnd) return false;
        const TCrossingSums* pSums = m_vSums.data() + ordered.nSums + (y - ordered.yWhole);
        int32_t nMin = INT32_MAX, nMax = INT32_MIN;
        for (int32_t n = 0; n < nRows; ++n) {
            if ((pSums[n].nMax >> 4) - (pSums[n].nMin >> 4) >= CROSSING_PIXELS) return false;
            nMin = std::min(nMin, pSums[n].nMin);
            nMax = std::max(nMax, pSums[n].nMax);
        }
        const int32_t nFirst = nMin >> 4, nLast = nMax >> 4;
        if (nFirst < 0 || nLast >= m_nEnd - 1) return false;
        const TFillEdge edge{std::max(nFirst - 1, 0) / CCountRow::RUN, (nLast + 1) / CCountRow::RUN + 1,
                             nWinding == 0, pSums};
        if (edge.nFirstRun < nReached || edge.nEndRun - edge.nFirstRun > TFillEdge::MAX_RUNS) return false;
        nReached = edge.nEndRun;
        const int32_t nBefore = nWinding;
        nWinding += active.nDirection;
        if (SignOf(nBefore, nWinding)) vEdges.push_back(edge);
    }
    return nWinding == 0;
}

// Writes the pixels before `nPixel`, unless crossings before it still reach behind it.
void CCellCounter::Reach(int32_t nPixel, CCountRow& row) {
    if (nPixel < m_nChanged) return;
    int16_t* pDifference = m_vDifference.data() + 1;
    int32_t nNext = m_nNext, nCount = m_nCount;
    for (const int32_t nEnd = m_nChanged; nNext < nEnd; ++nNext) {
        nCount += pDifference[nNext];
        pDifference[nNext] = 0;
        row.Set(nNext, static_cast<uint8_t>(std::min(nCount, 255)));
    }
    if (nCount != 0 && nNext < nPixel)
        row.SetEven(nNext, nPixel, static_cast<uint8_t>(std::min(nCount, 255)));
    m_nCount = nCount;
    m_nNext = m_nChanged = nPixel;
}

// Crossings that share no pixel with others: their pixels are known at once.
void CCellCounter::WriteEdge(const TActive& active, CCountRow& row) {
    constexpr int32_t FULL = ROWS * FILL_CELLS;
    const int32_t nBefore = m_anWinding[0];
    m_anWinding[0] += active.nDirection;
    const int32_t nSign = SignOf(nBefore, m_anWinding[0]);
    const int32_t nLast = active.sums.nMax >> 4;
    int32_t nNext = m_nNext;
    row.Mark(std::max(nNext - 1, 0), nLast + 1);
    for (uint64_t uSums = active.sums.uSums; nNext <= nLast; uSums >>= 16, ++nNext) {
        const auto nSet = static_cast<int32_t>(uSums & 0xFFFF);
        row.Set(nNext, static_cast<uint8_t>(std::min(nSign > 0 ? nSet : FULL - nSet, 255)));
    }
    m_nChanged = m_nNext = nNext;
    m_nCount = nSign > 0 ? FULL : 0;
}

void CCellCounter::AddCrossing(int32_t nCell, int32_t nSign) {
    int16_t* pDifference = m_vDifference.data() + 1 + (nCell >> 4);
    const int32_t nBehind = nCell & (FILL_CELLS - 1);
    pDifference[0] = static_cast<int16_t>(pDifference[0] + nSign * (FILL_CELLS - nBehind));
    pDifference[1] = static_cast<int16_t>(pDifference[1] + nSign * nBehind);
}

// A chain whose crossings all have the same winding number before them.
void CCellCounter::CountAlone(const TActive& active) {
    const int32_t nBefore = m_anWinding[0];
    const int32_t nAfter = nBefore + active.nDirection;
    AddSpans(active, SignOf(nBefore, nAfter));
    if (active.nEnd - active.nTop < ROWS) {
        m_anWinding.fill(nBefore);
        m_bEven = false;
        std::fill(m_anWinding.begin() + active.nTop, m_anWinding.begin() + active.nEnd, nAfter);
    } else {
        m_anWinding[0] = nAfter;
    }
}

void CCellCounter::AddSpans(const TActive& active, int32_t nSign) {
    const int32_t nRows = active.nEnd - active.nTop;
    const int32_t nFirst = active.sums.nMin >> 4;
    if ((active.sums.nMax >> 4) - nFirst >= CROSSING_PIXELS) {
        for (int32_t n = 0; n < nRows; ++n) AddCrossing(active.pCells[n], nSign);
        return;
    }
    int16_t* pDifference = m_vDifference.data() + 1 + nFirst;
    int32_t nBefore = 0;
    for (int32_t k = 0; k < CROSSING_PIXELS; ++k) {
        const auto nSet = static_cast<int32_t>(active.sums.uSums >> (16 * k) & 0xFFFF);
        pDifference[k] = static_cast<int16_t>(pDifference[k] + nSign * (nSet - nBefore));
        nBefore = nSet;
    }
    pDifference[CROSSING_PIXELS] =
        static_cast<int16_t>(pDifference[CROSSING_PIXELS] + nSign * (nRows * FILL_CELLS - nBefore));
}

// Chains that may cross one another: row by row of cells, in the order of the crossings there.
void CCellCounter::CountGroup(size_t nFrom, size_t nTo, int32_t nMax) {
    // Sorting costs as much per crossing as scanning so many cells, and less for a few.
    constexpr size_t CELLS = 8, CROWD = 16;
    if (m_bEven) m_anWinding.fill(m_anWinding[0]);
    const size_t nChains = nTo - nFrom;
    if (nChains >= CROWD && static_cast<size_t>(nMax - m_vActive[nFrom].sums.nMin) < nChains * CELLS)
        CountCrowd(nFrom, nTo, nMax);
    else
        CountSorted(nFrom, nTo);
    m_bEven = std::all_of(m_anWinding.begin(), m_anWinding.end(),
                          [&](int32_t nWinding) { return nWinding == m_anWinding[0]; });
}

void CCellCounter::Pass(int32_t nCell, int32_t nStep, int32_t& nWinding) {
    const int32_t nBefore = nWinding;
    nWinding += nStep;
    if (const int32_t nSign = SignOf(nBefore, nWinding)) AddCrossing(nCell, nSign);
}

void CCellCounter::CountSorted(size_t nFrom, size_t nTo) {
    constexpr size_t FEW = 16; // as many are in order, or nearly, more often than not
    if (m_vKeys.size() < nTo - nFrom) m_vKeys.resize(nTo - nFrom);
    int32_t* const pKeys = m_vKeys.data();
    for (int32_t nRow = 0; nRow < ROWS; ++nRow) {
        int32_t* pEnd = pKeys;
        for (size_t n = nFrom; n < nTo; ++n) {
            const TActive& active = m_vActive[n];
            if (nRow < active.nTop || nRow >= active.nEnd) continue;
            const int32_t nKey = active.GetCell(nRow) * 4 + active.nDirection + 1;
            int32_t* pKey = pEnd++;
            for (; nTo - nFrom <= FEW && pKey > pKeys && pKey[-1] > nKey; --pKey) *pKey = pKey[-1];
            *pKey = nKey;
        }
        // At one cell the order does not matter: a span that begins and ends there has no width.
        if (nTo - nFrom > FEW) std::sort(pKeys, pEnd);
        int32_t& nWinding = m_anWinding[static_cast<size_t>(nRow)];
        for (const int32_t* pKey = pKeys; pKey != pEnd; ++pKey) Pass(*pKey >> 2, (*pKey & 3) - 1, nWinding);
    }
}

// A row crossed by more than one outline.
void CCellCounter::CountUnion(CCountRow& row) {
    int32_t nMin = INT32_MAX, nMax = INT32_MIN;
    for (const TActive& active : m_vActive) {
        nMin = std::min(nMin, active.sums.nMin);
        nMax = std::max(nMax, active.sums.nMax);
        const size_t nOutlines = active.pOrdered->pChain->uOutline + size_t{1};
        if (m_vWindings.size() < nOutlines) m_vWindings.resize(nOutlines);
    }
    Reach(nMin >> 4, row);
    m_nChanged = std::max(m_nChanged, (nMax >> 4) + 2);
    row.Mark(std::max((nMin >> 4) - 1, 0), m_nChanged);
    for (int32_t nRow = 0; nRow < ROWS; ++nRow) {
        m_vCrossings.clear();
        for (const TActive& active : m_vActive)
            if (nRow >= active.nTop && nRow < active.nEnd)
                m_vCrossings.push_back(
                    {active.GetCell(nRow), active.nDirection, active.pOrdered->pChain->uOutline});
        std::sort(m_vCrossings.begin(), m_vCrossings.end(),
                  [](const TCellCrossing& a, const TCellCrossing& b) { return a.nCell < b.nCell; });
        int32_t nInside = 0; // outlines that wind around the cell
        for (const auto& [nCell, nStep, uOutline] : m_vCrossings) {
            int32_t& nWinding = m_vWindings[uOutline];
            const int32_t nSign = SignOf(nWinding, nWinding + nStep);
            nWinding += nStep;
            if (nSign != 0) Pass(nCell, nSign, nInside);
        }
        for (const TCellCrossing& crossing : m_vCrossings) m_vWindings[crossing.uOutline] = 0;
    }
}

// With many crossings each cell is scanned instead.
void CCellCounter::CountCrowd(size_t nFrom, size_t nTo, int32_t nMax) {
    const int32_t nMin = m_vActive[nFrom].sums.nMin;
    const auto nCells = static_cast<size_t>(nMax - nMin + 1);
    if (m_vSteps.size() < ROWS * nCells) m_vSteps.resize(ROWS * nCells);
    // The crossings of a chain are contiguous in memory, those of a row are not.
    for (size_t n = nFrom; n < nTo; ++n) {
        const TActive& active = m_vActive[n];
        for (int32_t nRow = active.nTop; nRow < active.nEnd; ++nRow)
            m_vSteps[static_cast<size_t>(nRow) * nCells + static_cast<size_t>(active.GetCell(nRow) - nMin)] +=
                active.nDirection;
    }
    int32_t* pSteps = m_vSteps.data();
    for (int32_t& nWinding : m_anWinding)
        for (int32_t nCell = nMin; nCell <= nMax; ++nCell, ++pSteps) {
            if (*pSteps == 0) continue;
            Pass(nCell, *pSteps, nWinding);
            *pSteps = 0;
        }
}
