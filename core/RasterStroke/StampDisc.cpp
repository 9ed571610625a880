// The sum of the cells in a box is a combination of four sums from the centre to its corners, so each place
// within a pixel costs a few additions a pixel once those sums are there. They are kept for the corners that
// boxes can have, modulo 2^32: a box's own sum fits.
//
// A disc is symmetric in eight directions. A sum with a corner in another quarter is the first quarter's with
// another sign; and a row of the quarter needs only the cells from the diagonal on, because those before it
// have been met as a column.
#include "core/RasterStroke/StampDisc.h"

#include "core/RasterStroke/StampGenerator.h"

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
    std::vector<uint16_t> vCells(nCells);
    std::vector<uint32_t> vColumns(nCells);  // the cells above the diagonal, column by column
    std::vector<uint32_t> vCorners(m_nSide); // the sums up to the present row
    for (size_t nRow = 0, nCorner = 0; nCorner < m_nSide; ++nRow) {
        if (nRow == nCorner * nStep + nFirst) {
            for (size_t k = nCorner; k < m_nSide; ++k)
                m_vSums[nCorner * m_nSide + k] = m_vSums[k * m_nSide + nCorner] = vCorners[k];
            ++nCorner;
        }
        if (nRow >= nCells) continue;
        generator.SetRow(nRow);
        const size_t nEnd = std::max(generator.GetEnd(), nRow);
        uint32_t uSum = vColumns[nRow];
        generator.Fill(vCells.data() + nRow, nRow, nEnd);
        for (size_t n = nRow; n < nEnd; ++n) vColumns[n] += vCells[n];
        // Corners before the diagonal are those of earlier rows.
        size_t k = nRow < nFirst ? 0 : (nRow - nFirst + nStep - 1) / nStep;
        for (size_t n = nRow; k < m_nSide; ++k) {
            const size_t nTo = std::min(k * nStep + nFirst, nEnd);
            for (; n < nTo; ++n) uSum += vCells[n];
            vCorners[k] += uSum;
            if (n == nEnd) break;
        }
        for (++k; k < m_nSide; ++k) vCorners[k] += uSum;
    }
}

CStampDisc::TCorner CStampDisc::CornerAt(int32_t nCell) const {
    const auto nAt = static_cast<size_t>((std::abs(nCell) - m_nFirst) / m_nStep);
    return {std::min(nAt, m_nSide - 1), nCell < 0 ? ~0u : 1u};
}

void CStampDisc::Cut(uint16_t* pStamp, int fx, int fy) const {
    const auto nHalf = static_cast<int32_t>(m_shape.GetHalfSize());
    const auto nSide = static_cast<size_t>(nHalf) * 2;
    const size_t nStride = StampStride(m_shape.GetHalfSize());
    std::vector<TCorner> vColumns(nSide + 1);
    for (size_t j = 0; j <= nSide; ++j)
        vColumns[j] = CornerAt((static_cast<int32_t>(j) - nHalf) * CELLS - fx - 4);
    // The boxes from the centre to a row of corners, and those to the row before.
    std::vector<uint32_t> vBoxes(nSide);
    std::vector<uint32_t> vBefore(nSide);
    std::fill_n(pStamp, StampLength(m_shape.GetHalfSize()), uint16_t{0});
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
        }
        vBefore.swap(vBoxes);
    }
}
