// Two sampling grids. The coarse one takes each cell's middle, on a grid of half cells; thin discs take four
// points of each cell, on a grid of quarter cells. With odd coordinates a squared distance is an integer, so
// the limits of the core and of the disc are exact; the radii only shrink from row to row, which finds them
// without a search. The middle of the edge goes through the kernels.
#include "core/RasterStamp/StampGenerator.h"

#include "core/Base/StableMath.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr uint32_t FINE_LIMIT = 0x4000; // two pixels
constexpr uint32_t WIDE_EDGE = 640;     // minimum half cells that make pieces worthwhile

constexpr uint64_t Square(uint64_t u) { return u * u; }

} // namespace

CStampGenerator::CStampGenerator(const TStampShape& shape)
    : m_bFine(shape.uOuter <= FINE_LIMIT), m_uHalf(m_bFine ? 2 : 1),
      m_uInner(Square(uint64_t{shape.uCore} * m_uHalf * 2) >> 20),
      m_uOuter(Square(uint64_t{shape.uOuter} * m_uHalf * 2) >> 20), m_nSolid(shape.GetHalfCells()),
      m_nEnd(shape.GetHalfCells()) {
    const int nShift = m_bFine ? 8 : 9;
    const uint32_t uInner = shape.uCore >> nShift;
    const uint32_t uWidth = (shape.uOuter >> nShift) - uInner;
    // The outer edge lies 3.6 standard deviations out. A disc without an edge has no cell between.
    const double dRate = uWidth ? 3.6f / static_cast<float>(uWidth) : 0.0f;
    m_falloff = {static_cast<double>(uInner), -0.5 * (dRate * dRate)};
    if (!m_bFine && uWidth >= WIDE_EDGE) m_pieces = CFalloffPieces(m_falloff, m_uInner, m_uOuter);
}

void CStampGenerator::SetRow(size_t nRow) {
    m_nRow = nRow;
    const uint64_t uUnit = 2 * m_uHalf;
    // The cell's samples farthest from and nearest to the centre.
    const uint64_t uFar = m_bFine ? 3 : 1;
    const auto square = [&](size_t nCell, uint64_t uSample) {
        return Square(uUnit * nCell + uSample) + Square(uUnit * nRow + uSample);
    };
    while (m_nSolid > 0 && square(m_nSolid - 1, uFar) > m_uInner) --m_nSolid;
    while (m_nEnd > 0 && square(m_nEnd - 1, 1) > m_uOuter) --m_nEnd;
    m_pieces.SetRow(nRow);
}

double CStampGenerator::Profile(uint64_t uSquare) const {
    if (uSquare <= m_uInner) return 1.0;
    if (uSquare > m_uOuter) return 0.0;
    const double d = std::sqrt(static_cast<double>(uSquare)) - m_falloff.dInner;
    return StableExp(m_falloff.dFactor * (d * d));
}

uint16_t CStampGenerator::FineCell(size_t nCell) const {
    double dSum = 0;
    for (const size_t y : {4 * m_nRow + 1, 4 * m_nRow + 3})
        for (const size_t x : {4 * nCell + 1, 4 * nCell + 3}) dSum += Profile(Square(x) + Square(y));
    return static_cast<uint16_t>(dSum * 16383.75 + 0.5);
}

void CStampGenerator::Fill(uint16_t* pCells, size_t nFirst, size_t nEnd) const {
    const size_t nBand = std::clamp(m_nSolid, nFirst, nEnd);
    std::fill_n(pCells, nBand - nFirst, uint16_t{0xFFFF});
    uint16_t* pBand = pCells + (nBand - nFirst);
    if (!m_bFine) {
        m_pieces.Fill(pBand, nBand, nEnd, m_falloff);
        return;
    }
    for (size_t n = nBand; n < nEnd; ++n) *pBand++ = FineCell(n);
}
