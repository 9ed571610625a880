// A row of pixels, each the number of its cells that are set, up to 255.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

/// Values outside what was written are 0. Beside the values, the row knows where they change: in runs of 16
/// pixels that are not marked, every value is the same as its neighbours'.
class CCountRow {
public:
    static constexpr int32_t RUN = 16;

    /// An empty row of `nWidth` pixels and one more on either side.
    void Create(int32_t nWidth) {
        const auto nRuns = static_cast<size_t>(nWidth / RUN + 3);
        m_vValues.assign(nRuns * RUN, 0);
        m_vMarks.assign(nRuns / 64 + 1, 0);
        m_nFirst = m_nEnd = 0;
        m_nFirstRun = m_nEndRun = 0;
    }
    void Clear() {
        if (m_nFirst < m_nEnd)
            std::fill(m_vValues.begin() + m_nFirst + RUN, m_vValues.begin() + m_nEnd + RUN, uint8_t{0});
        if (m_nFirstRun < m_nEndRun)
            std::fill(m_vMarks.begin() + m_nFirstRun / 64, m_vMarks.begin() + (m_nEndRun - 1) / 64 + 1, 0);
        m_nFirst = m_nEnd = 0;
        m_nFirstRun = m_nEndRun = 0;
    }
    bool IsEmpty() const { return m_nFirst == m_nEnd; }
    /// Pixel 0; from -1 to the width they may be read.
    uint8_t* GetValues() { return m_vValues.data() + RUN; }
    const uint8_t* GetValues() const { return m_vValues.data() + RUN; }
    /// All that was written lies from pixel `nFirst` to before `nEnd`.
    void SetExtent(int32_t nFirst, int32_t nEnd) { m_nFirst = nFirst, m_nEnd = nEnd; }
    int32_t GetFirst() const { return m_nFirst; }
    int32_t GetEnd() const { return m_nEnd; }
    /// Values change between pixels from `nFirst` to `nLast`; marks are made from left to right.
    void Mark(int32_t nFirst, int32_t nLast) {
        const int32_t nFrom = nFirst / RUN;
        const int32_t nTo = nLast / RUN;
        if (m_nFirstRun == m_nEndRun) m_nFirstRun = nFrom;
        m_nEndRun = nTo + 1;
        for (int32_t n = nFrom; n <= nTo; ++n)
            m_vMarks[static_cast<size_t>(n) / 64] |= uint64_t{1} << (n % 64);
    }
    uint64_t GetMarks(size_t nWord) const { return m_vMarks[nWord]; }

private:
    std::vector<uint8_t> m_vValues; ///< a run, the width, and at least a run
    std::vector<uint64_t> m_vMarks; ///< a bit a run
    int32_t m_nFirst = 0, m_nEnd = 0;
    int32_t m_nFirstRun = 0, m_nEndRun = 0;
};
