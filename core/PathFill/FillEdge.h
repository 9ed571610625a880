// Isolated edges: the pixel values around them are known without counting.
#pragma once

#include "core/PathFill/CountRow.h"
#include "core/RasterKernel/CrossingKernel.h"

#include <array>
#include <cstdint>
#include <cstring>

/// A chain without neighbours in some rows: beyond its runs of pixels, up to those of the next edge, all
/// cells are set or none.
struct TFillEdge {
    static constexpr int32_t MAX_RUNS = 4;

    int32_t nFirstRun, nEndRun; ///< with a pixel on either side of the crossings
    bool bBegins;               ///< cells are set behind it, else before it
    const TCrossingSums* pSums; ///< one for each row
};

/// Values around an edge, from one pixel before its first run to one behind its last, plus one run for
/// vector writes beyond the end.
inline constexpr size_t EDGE_ROW = (TFillEdge::MAX_RUNS + 1) * CCountRow::RUN;
using TEdgeRow = std::array<uint8_t, EDGE_ROW>;

/// Writes the values of a row that begins at pixel `nLeft`.
inline void WriteEdgeRow(TEdgeRow& row, const TCrossingSums& sums, int32_t nLeft, bool bBegins) {
    // For an edge that begins, and one that ends.
    static constexpr auto VALUES = [] {
        std::array<uint8_t, 4 * EDGE_ROW> aValues{};
        for (size_t n = EDGE_ROW; n < 3 * EDGE_ROW; ++n) aValues[n] = 255;
        return aValues;
    }();
    const auto nPixel = static_cast<size_t>((sums.nMin >> 4) - nLeft);
    std::memcpy(row.data(), VALUES.data() + (bBegins ? 1 : 3) * EDGE_ROW - nPixel, EDGE_ROW);
    constexpr uint64_t FULL = 0x0100'0100'0100'0100;
    uint64_t uSums = bBegins ? sums.uSums : FULL - sums.uSums;
    uSums -= (uSums & FULL) >> 8; // 256 becomes 255
    for (size_t n = 0; n < CROSSING_PIXELS; ++n) row[nPixel + n] = static_cast<uint8_t>(uSums >> (16 * n));
}
