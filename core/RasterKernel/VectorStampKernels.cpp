// The vector forms of the stamp kernels, one source for every instruction set that Highway knows here.
//
// Accumulation stays within 16-bit lanes: x * y / 65535 is the high half of the product, and one more where
// the low half does not lie below the high one's complement; and uAlpha * src / 255 is src * lim / 65535. The
// test for a destination at its limit becomes a maximum, because below the limit the sum never falls.
// The profile is the definition's arithmetic in the definition's order, without fused operations. Its pieces
// are evaluated in single precision, fused or not: a vector in which some value lies so near the middle
// between two integers that the error could round it to the wrong one is done again by the definition.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorStampKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/Base/StableMath.h"
#include "core/RasterKernel/StampKernel.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || !HWY_HAVE_FLOAT64

const TStampKernels* GetStampKernels() { return &PlainStampKernels(); }

#else

namespace hn = hwy::HWY_NAMESPACE;

// x * y / 65535, truncated.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V MulDiv65535(D d, V x, V y) {
    const V high = hn::MulHigh(x, y);
    const V low = hn::Mul(x, y);
    const auto more = hn::Eq(hn::Max(low, hn::Not(high)), low);
    return hn::Sub(high, hn::VecFromMask(d, more));
}

// Processes the whole vectors of a row. Returns the number of pixels done.
template <bool bOpaque, class D>
HWY_INLINE size_t AccumulateRow(D d, uint16_t* pDest, const uint16_t* pSrc, size_t nFirst, size_t nWidth,
                                hn::Vec<D> limit) {
    const size_t nStep = hn::Lanes(d);
    size_t x = nFirst;
    for (; x + nStep <= nWidth; x += nStep) {
        const auto dest = hn::LoadU(d, pDest + x);
        const auto src = hn::LoadU(d, pSrc + x);
        const auto ink = bOpaque ? src : MulDiv65535(d, src, limit);
        const auto sum = hn::Sub(hn::Add(dest, ink), MulDiv65535(d, dest, src));
        hn::StoreU(bOpaque ? sum : hn::Max(dest, hn::Min(sum, limit)), d, pDest + x);
    }
    return x;
}

template <bool bOpaque>
HWY_INLINE void AccumulateRows(const TStampRows& rows, uint8_t uAlpha) {
    const hn::ScalableTag<uint16_t> d;
    const hn::CappedTag<uint16_t, 8> d8; // short rows are common with thin lines
    const auto uLimit = static_cast<uint16_t>(uAlpha * 257);
    const auto limit = hn::Set(d, uLimit);
    const auto limit8 = hn::Set(d8, uLimit);
    for (size_t y = 0; y < rows.nRows; ++y) {
        uint16_t* pDest = rows.pDest + y * rows.nDestStride;
        const uint16_t* pSrc = rows.pSrc + y * rows.nSrcStride;
        size_t x = AccumulateRow<bOpaque>(d, pDest, pSrc, 0, rows.nWidth, limit);
        x = AccumulateRow<bOpaque>(d8, pDest, pSrc, x, rows.nWidth, limit8);
        if (x < rows.nWidth)
            PlainStampKernels().pAccumulate({pDest + x, 0, pSrc + x, 0, rows.nWidth - x, 1}, uAlpha);
    }
}

void Accumulate(const TStampRows& rows, uint8_t uAlpha) {
    if (uAlpha == 255)
        AccumulateRows<true>(rows, uAlpha);
    else
        AccumulateRows<false>(rows, uAlpha);
}

// StableExp.
template <class D, class V = hn::Vec<D>>
HWY_INLINE V Exp(D d, V x) {
    using T = TExpTerms;
    const hn::RebindToUnsigned<D> dBits;
    const V round = hn::Set(d, T::ROUND);
    const V shifted = hn::Add(hn::Mul(x, hn::Set(d, T::LOG2_E)), round);
    const V k = hn::Sub(shifted, round);
    const V r = hn::Sub(hn::Sub(x, hn::Mul(k, hn::Set(d, T::LN2_HIGH))), hn::Mul(k, hn::Set(d, T::LN2_LOW)));
    V p = hn::Set(d, T::SERIES[0]);
    for (size_t i = 1; i < T::SERIES.size(); ++i) p = hn::Add(hn::Mul(p, r), hn::Set(d, T::SERIES[i]));
    return hn::BitCast(d, hn::Add(hn::BitCast(dBits, p), hn::ShiftLeft<52>(hn::BitCast(dBits, shifted))));
}

// Cells whose centres lie `x` from the middle column and whose row's lies `square`, squared, from the middle
// row, in half cells.
template <class D, class V = hn::Vec<D>>
HWY_INLINE hn::Vec<hn::Rebind<uint16_t, D>> FalloffCells(D d, V x, V square, const TFalloff& falloff) {
    const hn::Rebind<int32_t, D> dInt;
    const hn::Rebind<uint16_t, D> dCell;
    const V distance = hn::Sub(hn::Sqrt(hn::Add(hn::Mul(x, x), square)), hn::Set(d, falloff.dInner));
    const V v = Exp(d, hn::Mul(hn::Set(d, falloff.dFactor), hn::Mul(distance, distance)));
    const V cells = hn::Add(hn::Mul(v, hn::Set(d, CELL_FULL)), hn::Set(d, 0.5));
    return hn::DemoteTo(dCell, hn::DemoteTo(dInt, cells));
}

double SquareOf(size_t nRow) { return static_cast<double>(2 * nRow + 1) * static_cast<double>(2 * nRow + 1); }

void Falloff(uint16_t* pCells, size_t nFirst, size_t nCount, size_t nRow, const TFalloff& falloff) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<uint16_t, decltype(d)> dCell;
    const size_t nStep = hn::Lanes(d);
    const auto square = hn::Set(d, SquareOf(nRow));
    size_t n = 0;
    for (; n + nStep <= nCount; n += nStep) {
        const auto cell = hn::Iota(d, static_cast<double>(nFirst + n));
        const auto x = hn::Add(hn::Add(cell, cell), hn::Set(d, 1.0));
        hn::StoreU(FalloffCells(d, x, square, falloff), dCell, pCells + n);
    }
    PlainStampKernels().pFalloff(pCells + n, nFirst + n, nCount - n, nRow, falloff);
}

// The cells of a row that a polynomial may have rounded to the wrong integer: they are told without a branch,
// and computed again together.
class CUnsafeCells {
public:
    using D = hn::CappedTag<float, CELL_MARGIN>;

    CUnsafeCells(uint16_t* pCells, size_t nFirst, size_t nRow, const TFalloff& falloff)
        : m_pCells(pCells), m_nFirst(nFirst), m_square(SquareOf(nRow)), m_falloff(falloff) {}

    // Takes the lanes of the vector of cells from `n` on that are not set in `safe`.
    HWY_INLINE void Add(size_t n, hn::Mask<D> safe) {
        if (m_nVectors == m_anCells.size()) Flush();
        m_anCells[m_nVectors] = static_cast<uint32_t>(n);
        hn::StoreMaskBits(D(), hn::Not(safe), m_aBits[m_nVectors].data());
        ++m_nVectors;
    }
    void Flush() {
        for (size_t n = 0; n < m_nVectors; ++n) {
            uint32_t uBits = m_aBits[n][0];
            if constexpr (LANES > 8) uBits |= uint32_t{m_aBits[n][1]} << 8;
            for (; HWY_UNLIKELY(uBits); uBits &= uBits - 1) {
                m_anUnsafe[m_nUnsafe] = m_anCells[n] + hwy::Num0BitsBelowLS1Bit_Nonzero32(uBits);
                if (++m_nUnsafe == m_anUnsafe.size()) Compute();
            }
        }
        m_nVectors = 0;
        Compute();
    }

private:
    static constexpr size_t LANES = hn::MaxLanes(D());

    void Compute() {
        const hn::ScalableTag<double> d;
        const hn::Rebind<uint16_t, decltype(d)> dCell;
        for (size_t n = 0; n < m_nUnsafe; n += hn::Lanes(d)) {
            HWY_ALIGN double adX[hn::MaxLanes(d)] = {};
            HWY_ALIGN uint16_t auCells[hn::MaxLanes(d)];
            const size_t nCount = std::min(hn::Lanes(d), m_nUnsafe - n);
            for (size_t i = 0; i < nCount; ++i) adX[i] = 2.0 * m_anUnsafe[n + i] + 1;
            hn::StoreU(FalloffCells(d, hn::Load(d, adX), hn::Set(d, m_square), m_falloff), dCell, auCells);
            for (size_t i = 0; i < nCount; ++i) m_pCells[m_anUnsafe[n + i] - m_nFirst] = auCells[i];
        }
        m_nUnsafe = 0;
    }

    uint16_t* m_pCells;
    size_t m_nFirst;
    double m_square;
    const TFalloff& m_falloff;
    size_t m_nVectors = 0;
    std::array<uint32_t, 512> m_anCells; ///< the vectors' first ones
    std::array<std::array<uint8_t, 2>, 512> m_aBits;
    size_t m_nUnsafe = 0;
    std::array<uint32_t, 64> m_anUnsafe;
};

// Rounding to integers by adding ROUND leaves the integer in the lowest bits of the sum.
HWY_INLINE void FalloffPiece(uint16_t* pCells, size_t nFirst, size_t nEnd, size_t nRow,
                             const TFalloffPiece& piece, size_t nRowFirst, CUnsafeCells& unsafe) {
    const CUnsafeCells::D d;
    const hn::RebindToSigned<decltype(d)> dInt;
    const hn::Rebind<uint16_t, decltype(d)> dCell;
    const size_t nStep = hn::Lanes(d);
    const auto round = hn::Set(d, 0x1.8p23f);
    const auto scale = hn::Set(d, piece.fScale);
    const auto base = hn::Sub(hn::Set(dInt, piece.nBase), hn::BitCast(dInt, round));
    const auto safe = hn::Set(d, 0.5f - MAX_PIECE_ERROR);
    const auto y = static_cast<int32_t>(2 * nRow + 1);
    const auto x = hn::Add(hn::ShiftLeft<1>(hn::Iota(dInt, static_cast<int32_t>(nFirst))), hn::Set(dInt, 1));
    // Squares by their differences: (x + 2m)^2 - x^2 is 4m(x + m).
    const auto m = static_cast<int32_t>(nStep);
    auto u = hn::Add(hn::Mul(x, x), hn::Set(dInt, y * y - piece.nCentre));
    auto du = hn::Mul(hn::Add(x, hn::Set(dInt, m)), hn::Set(dInt, 4 * m));
    const auto ddu = hn::Set(dInt, 8 * m * m);
    for (size_t n = nFirst; n < nEnd; n += nStep) {
        const auto t = hn::Mul(hn::ConvertTo(d, u), scale);
        auto v = hn::Set(d, piece.afTerms[TFalloffPiece::TERMS - 1]);
        for (size_t k = TFalloffPiece::TERMS - 1; k-- > 0;)
            v = hn::MulAdd(v, t, hn::Set(d, piece.afTerms[k]));
        const auto rounded = hn::Add(v, round);
        const auto off = hn::Abs(hn::Sub(v, hn::Sub(rounded, round)));
        const auto cells = hn::DemoteTo(dCell, hn::Add(hn::BitCast(dInt, rounded), base));
        hn::StoreU(cells, dCell, pCells + (n - nRowFirst));
        unsafe.Add(n, hn::Lt(off, safe));
        u = hn::Add(u, du);
        du = hn::Add(du, ddu);
    }
}

void FalloffRow(uint16_t* pCells, size_t nFirst, size_t nEnd, size_t nRow, const TFalloff& falloff,
                const TFalloffStretch* pStretches, size_t nStretches) {
    CUnsafeCells unsafe(pCells, nFirst, nRow, falloff);
    size_t n = nFirst;
    for (size_t i = 0; i < nStretches && n < nEnd; ++i) {
        const size_t nTo = std::min(pStretches[i].nEnd, nEnd);
        if (nTo <= n) continue;
        if (pStretches[i].piece.fScale == 0)
            Falloff(pCells + (n - nFirst), n, nTo - n, nRow, falloff);
        else
            FalloffPiece(pCells, n, nTo, nRow, pStretches[i].piece, nFirst, unsafe);
        n = nTo;
    }
    if (n < nEnd) Falloff(pCells + (n - nFirst), n, nEnd - n, nRow, falloff);
    unsafe.Flush();
}

void AddCells(uint32_t* pSums, const uint16_t* pCells, size_t nCount) {
    const hn::ScalableTag<uint32_t> d;
    const hn::Rebind<uint16_t, decltype(d)> dCell;
    const size_t nStep = hn::Lanes(d);
    size_t n = 0;
    for (; n + nStep <= nCount; n += nStep)
        hn::StoreU(hn::Add(hn::LoadU(d, pSums + n), hn::PromoteTo(d, hn::LoadU(dCell, pCells + n))), d,
                   pSums + n);
    PlainStampKernels().pAddCells(pSums + n, pCells + n, nCount - n);
}

void UpperBytes(uint8_t* pBytes, const uint16_t* pValues, size_t nCount) {
    const hn::ScalableTag<uint16_t> d;
    const hn::RebindToSigned<decltype(d)> dSigned;
    const hn::Rebind<uint8_t, decltype(d)> d8;
    const size_t nStep = hn::Lanes(d);
    size_t n = 0;
    for (; n + nStep <= nCount; n += nStep) {
        const auto upper = hn::ShiftRight<8>(hn::LoadU(d, pValues + n));
        hn::StoreU(hn::DemoteTo(d8, hn::BitCast(dSigned, upper)), d8, pBytes + n);
    }
    PlainStampKernels().pUpperBytes(pBytes + n, pValues + n, nCount - n);
}

const TStampKernels* GetStampKernels() {
    static constexpr TStampKernels kernels{Accumulate, Falloff, FalloffRow, AddCells, UpperBytes};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetStampKernels);

const TStampKernels& VectorStampKernels() { return *HWY_DYNAMIC_DISPATCH(GetStampKernels)(); }
#endif
