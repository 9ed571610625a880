// The sum of the cells in a box is a combination of four sums from the centre to its corners, so each place
// within a pixel costs a few additions a pixel once those sums are there. They are kept for the corners that
// boxes can have, modulo 2^32: a box's own sum fits.
//
// A disc is symmetric in eight directions. A sum with a corner in another quarter is the first quarter's with
// another sign; and of the quarter's rows only the cells from the diagonal on are needed. They are summed
// column by column: right of the diagonal such a sum has all the cells above a row of corners, and what lies
// left of it is a square, which grows by twice a column and a cell on the diagonal.
#include "core/RasterStamp/StampDisc.h"

#include "core/RasterKernel/StampKernel.h"
#include "core/RasterStamp/StampGenerator.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int32_t CELLS = 8; // to a pixel, in each direction

} // namespace

CStampDisc::CStampDisc(const TStampShape& shape, int nLostBits)
    // Corners lie at 8 * i - f - 4.
    : m_shape(shape), m_nStep(1 << nLostBits), m_nFirst(m_nStep == CELLS ? 4 : 0) {
    MakeSums();
}

void CStampDisc::MakeSums() {
    CStampGenerator generator(m_shape);
    generator.SetRow(0);
    const size_t nCells = generator.GetEnd();
    const auto nStep = static_cast<size_t>(m_nStep);
    const auto nFirst = static_cast<size_t>(m_nFirst);
    // The last corner has the whole disc before it.
    m_nSide = (nCells + nStep - 1) / nStep + 1;
    m_vSums.assign(m_nSide * m_nSide, 0);
    std::vector<uint16_t> vCells(nCells + CELL_MARGIN);
    std::vector<uint32_t> vColumns(nCells); // the cells above the diagonal, column by column
    uint32_t uSquare = 0;                   // the cells before the row and before its diagonal
    for (size_t nRow = 0, nCorner = 0; nCorner < m_nSide; ++nRow) {
        if (nRow == nCorner * nStep + nFirst) {
            uint32_t uSum = uSquare;
            for (size_t k = nCorner, n = nRow; k < m_nSide; ++k) {
                for (const size_t nTo = std::min(k * nStep + nFirst, nCells); n < nTo; ++n)
                    uSum += vColumns[n];
                m_vSums[nCorner * m_nSide + k] = m_vSums[k * m_nSide + nCorner] = uSum;
            }
            ++nCorner;
        }
        if (nRow >= nCells) continue;
        generator.SetRow(nRow);
        uSquare += 2 * vColumns[nRow];
        if (generator.GetEnd() <= nRow) continue;
        generator.Fill(vCells.data(), nRow, generator.GetEnd());
        uSquare += vCells[0];
        StampKernels().pAddCells(vColumns.data() + nRow, vCells.data(), generator.GetEnd() - nRow);
    }
}

CStampDisc::TCorner CStampDisc::CornerAt(int32_t nCell) const {
    const auto nAt = static_cast<size_t>((std::abs(nCell) - m_nFirst) / m_nStep);
    return {std::min(nAt, m_nSide - 1), nCell < 0 ? ~0u : 1u};
}

// In the middle of a pixel the stamp is as symmetric as the disc: a quarter is enough.
void CStampDisc::CutCentred(uint16_t* pStamp) const {
    constexpr uint32_t AREA = CELLS * CELLS;
    const size_t nHalf = m_shape.GetHalfSize();
    const size_t nStride = StampStride(m_shape.GetHalfSize());
    const size_t nColumns = std::min(nHalf + 1, m_nSide);
    std::vector<uint32_t> vBoxes(nHalf + 1); // from the centre's row to a row of corners, pixel by pixel
    std::vector<uint32_t> vBefore(nHalf + 1);
    std::vector<uint16_t> vRow(nHalf + 1);
    std::fill_n(pStamp, STAMP_MARGIN, uint16_t{0});
    for (size_t i = 0; i <= nHalf; ++i) {
        const uint32_t* pSums = m_vSums.data() + std::min(i, m_nSide - 1) * m_nSide;
        vBoxes[0] = 2 * pSums[0]; // the same on both sides of the centre
        for (size_t j = 1; j < nColumns; ++j) vBoxes[j] = pSums[j] - pSums[j - 1];
        if (i == 0)
            for (size_t j = 0; j <= nHalf; ++j) vRow[j] = static_cast<uint16_t>(2 * vBoxes[j] / AREA);
        else
            for (size_t j = 0; j <= nHalf; ++j)
                vRow[j] = static_cast<uint16_t>((vBoxes[j] - vBefore[j]) / AREA);
        uint16_t* pOut = pStamp + STAMP_MARGIN + (nHalf - i) * nStride;
        std::reverse_copy(vRow.begin(), vRow.end(), pOut);
        std::copy(vRow.begin() + 1, vRow.end() - 1, pOut + nHalf + 1);
        std::fill(pOut + 2 * nHalf, pOut + nStride, uint16_t{0});
        if (i > 0 && i < nHalf) std::copy_n(pOut, nStride, pOut + 2 * i * nStride);
        vBefore.swap(vBoxes);
    }
}

void CStampDisc::Cut(uint16_t* pStamp, int fx, int fy) const {
    if (m_nStep == CELLS) {
        CutCentred(pStamp);
        return;
    }
    const auto nHalf = static_cast<int32_t>(m_shape.GetHalfSize());
    const auto nSide = static_cast<size_t>(nHalf) * 2;
    const size_t nStride = StampStride(m_shape.GetHalfSize());
    std::vector<TCorner> vColumns(nSide + 1);
    for (size_t j = 0; j <= nSide; ++j)
        vColumns[j] = CornerAt((static_cast<int32_t>(j) - nHalf) * CELLS - fx - 4);
    // Sums of the boxes from the centre to a row of corners, and to the row before.
    std::vector<uint32_t> vBoxes(nSide);
    std::vector<uint32_t> vBefore(nSide);
    std::fill_n(pStamp, STAMP_MARGIN, uint16_t{0});
    for (int32_t i = -nHalf; i <= nHalf; ++i) {
        const TCorner row = CornerAt(i * CELLS - fy - 4);
        const uint32_t* pSums = m_vSums.data() + row.nAt * m_nSide;
        const auto sum = [&](const TCorner& column) {
            return pSums[column.nAt] * (column.uSign * row.uSign);
        };
        uint32_t uLeft = sum(vColumns[0]);
        for (size_t j = 0; j < nSide; ++j) {
            const uint32_t uRight = sum(vColumns[j + 1]);
            vBoxes[j] = uRight - uLeft;
            uLeft = uRight;
        }
        if (i > -nHalf) {
            uint16_t* pOut = pStamp + STAMP_MARGIN + static_cast<size_t>(i - 1 + nHalf) * nStride;
            for (size_t j = 0; j < nSide; ++j)
                pOut[j] = static_cast<uint16_t>((vBoxes[j] - vBefore[j]) / (CELLS * CELLS));
            std::fill_n(pOut + nSide, nStride - nSide, uint16_t{0});
        }
        vBefore.swap(vBoxes);
    }
}
