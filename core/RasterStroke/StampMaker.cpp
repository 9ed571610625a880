// Sums are integers, so their order is free. The quarter disc goes through once, row by row: running sums
// give the eight cells under each pixel with one difference, for the row itself and, mirrored, for its left
// half; the sums are added to the pixel row under the cell row and to the one under its mirror image below.
//
// A disc in the middle of its pixel is symmetric in eight directions: then only the pixels between the
// horizontal and the diagonal are made, and copied.
#include "core/RasterStroke/StampMaker.h"

#include "core/RasterStroke/StampGenerator.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int32_t CELLS = 8; // to a pixel, in each direction

// The pixel, counted from the centre's, whose eight cells hold cell `n` (negative: left of the centre or
// above) when the disc is moved by `f` cells.
int32_t PixelOf(int32_t n, int f) { return (n + f + 4) >> 3; }

} // namespace

void CStampMaker::Make(uint16_t* pStamp, const TStampShape& shape, int fx, int fy) {
    const auto nHalf = static_cast<int32_t>(shape.GetHalfSize());
    const auto nSide = static_cast<size_t>(nHalf) * 2;
    const size_t nCells = shape.GetHalfCells();
    const bool bOctant = fx == 0 && fy == 0;
    m_vCells.resize(nCells);
    m_vPrefix.resize(nCells + 1);
    m_vRow.resize(nSide);
    m_vSums.assign(nSide * nSide, 0);
    const auto addRow = [&](int32_t nPixel, size_t nFirst, size_t nEnd) {
        if (nPixel < -nHalf || nPixel >= nHalf) return;
        uint32_t* pSums = m_vSums.data() + static_cast<size_t>(nPixel + nHalf) * nSide;
        for (size_t j = nFirst; j < nEnd; ++j) pSums[j] += m_vRow[j];
    };
    CStampGenerator generator(shape);
    for (size_t nRow = 0;; ++nRow) {
        generator.SetRow(nRow);
        const size_t nEnd = generator.GetEnd();
        if (nEnd == 0) break;
        const auto y = static_cast<int32_t>(nRow);
        const int32_t nBelow = PixelOf(y, fy);
        // The first cell that a pixel of this row, right of the diagonal, needs.
        const size_t nStart =
            bOctant
                ? static_cast<size_t>(std::clamp<int32_t>(nBelow * CELLS - 4, 0, static_cast<int32_t>(nEnd)))
                : 0;
        generator.Fill(m_vCells.data(), nStart, nEnd);
        uint32_t uSum = 0;
        for (size_t n = nStart; n < nEnd; ++n) {
            m_vPrefix[n] = uSum;
            uSum += m_vCells[n - nStart];
        }
        m_vPrefix[nEnd] = uSum;
        // The sum of the cells from the centre to `n`, which is odd: to the left it counts negative.
        const auto prefix = [&](int32_t n) {
            const size_t nAt = std::min(static_cast<size_t>(std::abs(n)), nEnd);
            return n < 0 ? 0u - m_vPrefix[nAt] : m_vPrefix[nAt];
        };
        const int32_t nLast = std::min(PixelOf(static_cast<int32_t>(nEnd) - 1, fx), nHalf - 1);
        const int32_t nFirst = bOctant ? nBelow : std::max(PixelOf(-static_cast<int32_t>(nEnd), fx), -nHalf);
        if (nFirst > nLast) continue;
        int32_t nCell = nFirst * CELLS - fx - 4;
        uint32_t uBefore = prefix(nCell);
        for (int32_t j = nFirst; j <= nLast; ++j) {
            nCell += CELLS;
            const uint32_t uAfter = prefix(nCell);
            m_vRow[static_cast<size_t>(j + nHalf)] = uAfter - uBefore;
            uBefore = uAfter;
        }
        const auto nFrom = static_cast<size_t>(nFirst + nHalf);
        const auto nTo = static_cast<size_t>(nLast + nHalf) + 1;
        addRow(nBelow, nFrom, nTo);
        const int32_t nAbove = PixelOf(-1 - y, fy);
        if (!bOctant || nAbove == 0) addRow(nAbove, nFrom, nTo);
    }
    std::fill_n(pStamp, StampLength(shape.GetHalfSize()), uint16_t{0});
    const size_t nStride = StampStride(shape.GetHalfSize());
    for (int32_t i = -nHalf; i < nHalf; ++i) {
        uint16_t* pOut = pStamp + STAMP_MARGIN + static_cast<size_t>(i + nHalf) * nStride;
        for (int32_t j = -nHalf; j < nHalf; ++j) {
            int32_t nRow = i;
            int32_t nColumn = j;
            if (bOctant) {
                nRow = std::min(std::abs(i), std::abs(j));
                nColumn = std::max(std::abs(i), std::abs(j));
            }
            const bool bMade = nColumn < nHalf;
            *pOut++ = !bMade ? uint16_t{0}
                             : static_cast<uint16_t>(m_vSums[static_cast<size_t>(nRow + nHalf) * nSide +
                                                             static_cast<size_t>(nColumn + nHalf)] >>
                                                     6);
        }
    }
}
