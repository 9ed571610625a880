// A row of pixels, each with the number of its set cells, up to 255.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

/// Values come in runs of 16 pixels. An unmarked run has one value, which its neighbours in the row share;
/// a marked run stores its values and the two beside it. Unwritten values are 0.
class CCountRow {
public:
    static constexpr int32_t RUN = 16;

    /// Creates an empty row of at least `nWidth` pixels and one more on either side. A row that is wide
    /// enough is only cleared.
    void Create(int32_t nWidth) {
        Clear();
        const auto nRuns = static_cast<size_t>(nWidth / RUN + 3);
        if (nRuns <= m_vEven.size()) return;
        m_vValues.resize((nRuns + 2) * RUN);
        m_vMarks.resize(nRuns / 64 + 1);
        m_vEven.resize(nRuns);
    }
    void Clear();
    bool IsEmpty() const { return m_nFirstRun == m_nEndRun; }
    /// Runs that are not all 0 and unmarked lie from the first to before the end.
    int32_t GetFirstRun() const { return m_nFirstRun; }
    int32_t GetEndRun() const { return m_nEndRun; }

    /// Marks a change of values between pixels `nFirst` and `nLast`, from 0 to the width + 2. The row is
    /// written from left to right.
    void Mark(int32_t nFirst, int32_t nLast) {
        const int32_t nFrom = nFirst / RUN;
        const int32_t nTo = nLast / RUN;
        if (m_nFirstRun == m_nEndRun) m_nFirstRun = nFrom;
        m_nEndRun = std::max(m_nEndRun, nTo + 1);
        auto nWord = static_cast<size_t>(nFrom) / 64;
        const auto nLastWord = static_cast<size_t>(nTo) / 64;
        uint64_t uMarks = ~uint64_t{0} << (nFrom % 64);
        for (; nWord < nLastWord; ++nWord, uMarks = ~uint64_t{0}) m_vMarks[nWord] |= uMarks;
        m_vMarks[nWord] |= uMarks & (~uint64_t{0} >> (63 - nTo % 64));
    }
    /// Writes a pixel of a marked run, or one beside it.
    void Set(int32_t nPixel, uint8_t uValue) { m_vValues[static_cast<size_t>(nPixel + RUN)] = uValue; }
    /// Fills pixels from `nFirst` to before `nEnd`; the runs of `nFirst` and `nEnd - 1` are marked, now or
    /// later, those between are not.
    void SetEven(int32_t nFirst, int32_t nEnd, uint8_t uValue);

    /// 64 runs' marks, the first run's the lowest bit.
    uint64_t GetMarks(size_t nWord) const { return m_vMarks[nWord]; }
    /// The values of a run, with its neighbours' values around them.
    const uint8_t* GetRun(int32_t nRun) const {
        const auto n = static_cast<size_t>(nRun);
        if (m_vMarks[n / 64] >> (n % 64) & 1) return m_vValues.data() + (n + 1) * RUN;
        return EVEN_RUNS[m_vEven[n]].data() + 1;
    }
    /// The value of a run that is not marked.
    uint8_t GetEven(int32_t nRun) const { return m_vEven[static_cast<size_t>(nRun)]; }

private:
    using TEvenRuns = std::array<std::array<uint8_t, RUN + 2>, 256>;
    static const TEvenRuns EVEN_RUNS;

    std::vector<uint8_t> m_vValues; ///< preceded by one unused run
    std::vector<uint8_t> m_vEven;   ///< one value for each run
    std::vector<uint64_t> m_vMarks; ///< one bit for each run
    int32_t m_nFirstRun = 0, m_nEndRun = 0;
};
