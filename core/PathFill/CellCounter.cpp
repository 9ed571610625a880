#include "core/PathFill/CellCounter.h"

#include <climits>

namespace {

// Crossings that lie within so many pixels are summed in one number.
constexpr int32_t STEEP = 4;
constexpr int SUM_BITS = 16;

// For a crossing at each cell of these pixels, the cells set behind it in each of them.
constexpr auto SPANS = [] {
    std::array<uint64_t, STEEP * FILL_CELLS> spans{};
    for (int32_t n = 0; n < STEEP * FILL_CELLS; ++n)
        for (int32_t k = 0; k < STEEP; ++k)
            spans[static_cast<size_t>(n)] |=
                static_cast<uint64_t>(std::clamp((k + 1) * FILL_CELLS - n, 0, FILL_CELLS)) << (k * SUM_BITS);
    return spans;
}();

int32_t SignOf(int32_t nBefore, int32_t nAfter) { return (nAfter != 0) - (nBefore != 0); }

} // namespace

void CCellCounter::Begin(CMonotoneChains& chains, int32_t nFirst, int32_t nEnd) {
    m_pChains = &chains;
    m_nFirst = nFirst;
    m_nEnd = nEnd;
    m_vOrder.clear();
    for (TChain& chain : chains.GetChains()) m_vOrder.push_back(&chain);
    std::sort(m_vOrder.begin(), m_vOrder.end(),
              [](const TChain* pA, const TChain* pB) { return pA->yTop < pB->yTop; });
    m_nWaiting = 0;
    m_vActive.clear();
    // A crossing at the right end still has its pixel and those behind.
    m_vDifference.resize(std::max(m_vDifference.size(), static_cast<size_t>(nEnd) + STEEP + 2));
}

int32_t CCellCounter::NextRow(int32_t y) const {
    if (!m_vActive.empty()) return y;
    if (m_nWaiting == m_vOrder.size()) return INT32_MAX;
    return std::max(y, m_vOrder[m_nWaiting]->yTop >> 4);
}

// Where a chain is in row `y`: lines are monotone, so their ends tell.
void CCellCounter::Measure(TActive& active, int32_t y) {
    const TChain& chain = *active.pChain;
    int32_t yCell = std::max(chain.yTop, y * ROWS);
    const int32_t yEnd = std::min(chain.yEnd, (y + 1) * ROWS);
    active.nTop = yCell - y * ROWS;
    active.nEnd = yEnd - y * ROWS;
    active.nMin = INT32_MAX;
    active.nMax = INT32_MIN;
    for (size_t n = chain.nCurrent;; n += static_cast<size_t>(chain.nDirection)) {
        const TChainLine& line = m_pChains->GetLine(n);
        const int32_t yStop = std::min(line.yEnd, yEnd);
        const int64_t nLastX = line.nX + line.nStep * (yStop - yCell - 1);
        const auto nA = static_cast<int32_t>(line.nX >> CMonotoneChains::CROSSING_BITS);
        const auto nB = static_cast<int32_t>(nLastX >> CMonotoneChains::CROSSING_BITS);
        active.nMin = std::min({active.nMin, nA, nB});
        active.nMax = std::max({active.nMax, nA, nB});
        if (yStop == yEnd) break;
        yCell = yStop;
    }
    // What lies beyond the ends is counted at them.
    active.nMin = std::clamp(active.nMin, m_nFirst * FILL_CELLS - 1, m_nEnd * FILL_CELLS);
    active.nMax = std::clamp(active.nMax, m_nFirst * FILL_CELLS, m_nEnd * FILL_CELLS + 1);
}

bool CCellCounter::IsInside(const TActive& active) const {
    return active.nMin >= m_nFirst * FILL_CELLS && active.nMax <= m_nEnd * FILL_CELLS;
}

// Gives nX of every crossing, from the top down, and takes the chain on to the next row.
template <class Function>
void CCellCounter::ForEachCrossing(const TActive& active, Function fn) {
    TChain& chain = *active.pChain;
    for (int32_t nRows = active.nEnd - active.nTop; nRows > 0;) {
        TChainLine& line = m_pChains->GetLine(chain.nCurrent);
        const int32_t nHere = std::min(line.yEnd - line.yTop, nRows);
        int64_t nX = line.nX;
        for (int32_t n = 0; n < nHere; ++n, nX += line.nStep) fn(nX);
        line.nX = nX;
        line.yTop += nHere;
        if (line.yTop == line.yEnd) chain.nCurrent += static_cast<size_t>(chain.nDirection);
        nRows -= nHere;
    }
}

void CCellCounter::Count(int32_t y, CCountRow& row) {
    for (; m_nWaiting < m_vOrder.size() && m_vOrder[m_nWaiting]->yTop < (y + 1) * ROWS; ++m_nWaiting)
        m_vActive.push_back({m_vOrder[m_nWaiting], 0, 0, 0, 0});
    for (TActive& active : m_vActive) Measure(active, y);
    const auto lefter = [](const TActive& a, const TActive& b) { return a.nMin < b.nMin; };
    if (!std::is_sorted(m_vActive.begin(), m_vActive.end(), lefter))
        std::sort(m_vActive.begin(), m_vActive.end(), lefter);

    m_anWinding[0] = 0;
    m_bEven = true;
    m_nCount = 0;
    m_nNext = m_nChanged = m_nFirst;
    for (size_t n = 0; n < m_vActive.size();) {
        const TActive& first = m_vActive[n];
        int32_t nMax = first.nMax;
        size_t nTo = n + 1;
        for (; nTo < m_vActive.size() && m_vActive[nTo].nMin <= nMax; ++nTo)
            nMax = std::max(nMax, m_vActive[nTo].nMax);
        const int32_t nPixel = std::max(first.nMin >> 4, m_nFirst);
        Reach(nPixel, row);
        // The crossings' pixels, one behind, and the filter's neighbours of both.
        m_nChanged = std::max(m_nChanged, (nMax >> 4) + 2);
        row.Mark(std::max(nPixel - 1, 0), m_nChanged);
        if (nTo == n + 1 && m_bEven && IsInside(first))
            CountAlone(first);
        else
            CountGroup(n, nTo);
        n = nTo;
    }
    // A shape that goes on beyond the end has its last value beside what lies there.
    Reach(std::max(m_nEnd, m_nChanged), row);
    if (m_nCount != 0) row.Mark(m_nEnd - 1, m_nEnd - 1);
    for (int32_t n = m_nEnd; n < m_nNext; ++n) row.Set(n, 0);

    const int32_t yNext = (y + 1) * ROWS;
    std::erase_if(m_vActive, [&](const TActive& active) { return active.pChain->yEnd <= yNext; });
}

// Writes the pixels before `nPixel`, unless crossings before it still reach behind it.
void CCellCounter::Reach(int32_t nPixel, CCountRow& row) {
    if (nPixel < m_nChanged) return;
    int16_t* pDifference = m_vDifference.data() + 1;
    for (; m_nNext < m_nChanged; ++m_nNext) {
        m_nCount += pDifference[m_nNext];
        pDifference[m_nNext] = 0;
        row.Set(m_nNext, static_cast<uint8_t>(std::min(m_nCount, 255)));
    }
    if (m_nCount != 0 && m_nNext < nPixel)
        row.SetEven(m_nNext, nPixel, static_cast<uint8_t>(std::min(m_nCount, 255)));
    m_nNext = m_nChanged = nPixel;
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
    const int32_t nAfter = nBefore + active.pChain->nDirection;
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
    const int32_t nFirst = active.nMin >> 4;
    if ((active.nMax >> 4) - nFirst >= STEEP) {
        ForEachCrossing(active, [&](int64_t nX) {
            AddCrossing(static_cast<int32_t>(nX >> CMonotoneChains::CROSSING_BITS), nSign);
        });
        return;
    }
    uint64_t uSums = 0;
    const int64_t nLeft = int64_t{nFirst * FILL_CELLS} * (int64_t{1} << CMonotoneChains::CROSSING_BITS);
    ForEachCrossing(active, [&](int64_t nX) {
        uSums += SPANS[static_cast<size_t>((nX - nLeft) >> CMonotoneChains::CROSSING_BITS)];
    });
    int16_t* pDifference = m_vDifference.data() + 1 + nFirst;
    int32_t nSum = 0;
    for (int32_t k = 0; k <= STEEP; ++k, uSums >>= SUM_BITS) {
        const int32_t nNext =
            k < STEEP ? static_cast<int32_t>(uSums & 0xFFFF) : (active.nEnd - active.nTop) * FILL_CELLS;
        pDifference[k] = static_cast<int16_t>(pDifference[k] + nSign * (nNext - nSum));
        nSum = nNext;
    }
}

// Chains that may cross one another: row by row of cells, in the order of the crossings there.
void CCellCounter::CountGroup(size_t nFrom, size_t nTo) {
    if (m_bEven) m_anWinding.fill(m_anWinding[0]);
    if (m_vCrossings.size() < nTo - nFrom) m_vCrossings.resize((nTo - nFrom) * 2);
    for (size_t n = nFrom; n < nTo; ++n) {
        int32_t* pCell = m_vCrossings[n - nFrom].data() + m_vActive[n].nTop;
        ForEachCrossing(m_vActive[n], [&](int64_t nX) {
            const auto nCell = static_cast<int32_t>(nX >> CMonotoneChains::CROSSING_BITS);
            *pCell++ = std::clamp(nCell, m_nFirst * FILL_CELLS, m_nEnd * FILL_CELLS);
        });
    }
    for (int32_t nRow = 0; nRow < ROWS; ++nRow) {
        m_vKeys.clear();
        for (size_t n = nFrom; n < nTo; ++n) {
            const TActive& active = m_vActive[n];
            if (active.nTop <= nRow && nRow < active.nEnd)
                m_vKeys.push_back(m_vCrossings[n - nFrom][static_cast<size_t>(nRow)] * 4 +
                                  active.pChain->nDirection + 1);
        }
        // At one cell the order does not matter: what begins there and ends there is no cell wide.
        if (m_vKeys.size() > 1) std::sort(m_vKeys.begin(), m_vKeys.end());
        int32_t& nWinding = m_anWinding[static_cast<size_t>(nRow)];
        for (const int32_t nKey : m_vKeys) {
            const int32_t nBefore = nWinding;
            nWinding += (nKey & 3) - 1;
            if (const int32_t nSign = SignOf(nBefore, nWinding)) AddCrossing(nKey >> 2, nSign);
        }
    }
    m_bEven = std::all_of(m_anWinding.begin(), m_anWinding.end(),
                          [&](int32_t nWinding) { return nWinding == m_anWinding[0]; });
}
