#include "core/PathFill/CountRow.h"

const CCountRow::TEvenRuns CCountRow::EVEN_RUNS = [] {
    TEvenRuns runs;
    for (size_t n = 0; n < runs.size(); ++n) runs[n].fill(static_cast<uint8_t>(n));
    return runs;
}();

void CCountRow::Clear() {
    if (IsEmpty()) return;
    const auto nFirst = static_cast<size_t>(m_nFirstRun);
    const auto nEnd = static_cast<size_t>(m_nEndRun);
    for (size_t nWord = nFirst / 64; nWord <= (nEnd - 1) / 64; ++nWord) {
        for (uint64_t u = m_vMarks[nWord]; u; u &= u - 1) {
            const size_t nRun = nWord * 64 + static_cast<size_t>(std::countr_zero(u));
            std::memset(m_vValues.data() + (nRun + 1) * RUN - 1, 0, RUN + 2);
        }
        m_vMarks[nWord] = 0;
    }
    std::memset(m_vEven.data() + nFirst, 0, nEnd - nFirst);
    m_nFirstRun = m_nEndRun = 0;
}

void CCountRow::SetEven(int32_t nFirst, int32_t nEnd, uint8_t uValue) {
    uint8_t* pValues = m_vValues.data() + RUN;
    const int32_t nAfter = nFirst / RUN + 1; // the first run between
    const int32_t nLast = (nEnd - 1) / RUN;  // the next marked one
    if (nAfter >= nLast) {
        std::memset(pValues + nFirst, uValue, static_cast<size_t>(nEnd - nFirst));
        return;
    }
    const int32_t nHead = nAfter * RUN + 1;
    const int32_t nTail = nLast * RUN - 1;
    std::memset(pValues + nFirst, uValue, static_cast<size_t>(nHead - nFirst));
    std::memset(pValues + nTail, uValue, static_cast<size_t>(nEnd - nTail));
    std::memset(m_vEven.data() + nAfter, uValue, static_cast<size_t>(nLast - nAfter));
}
