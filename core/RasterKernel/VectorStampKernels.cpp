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

void Falloff(uint16_t* pCells, size_t nFirst, size_t nCount, size_t nRow, const TFalloff& falloff) {
    const hn::ScalableTag<double> d;
    const hn::Rebind<int32_t, decltype(d)> dInt;
    const hn::Rebind<uint16_t, decltype(d)> dCell;
    const size_t nStep = hn::Lanes(d);
    const auto one = hn::Set(d, 1.0);
    const auto row = hn::Set(d, static_cast<double>(2 * nRow + 1) * static_cast<double>(2 * nRow + 1));
    const auto inner = hn::Set(d, falloff.dInner);
    const auto factor = hn::Set(d, falloff.dFactor);
    size_t n = 0;
    for (; n + nStep <= nCount; n += nStep) {
        const auto cell = hn::Iota(d, static_cast<double>(nFirst + n));
        const auto x = hn::Add(hn::Add(cell, cell), one);
        const auto distance = hn::Sub(hn::Sqrt(hn::Add(hn::Mul(x, x), row)), inner);
        const auto v = Exp(d, hn::Mul(factor, hn::Mul(distance, distance)));
        const auto cells = hn::Add(hn::Mul(v, hn::Set(d, CELL_FULL)), hn::Set(d, 0.5));
        hn::StoreU(hn::DemoteTo(dCell, hn::DemoteTo(dInt, cells)), dCell, pCells + n);
    }
    PlainStampKernels().pFalloff(pCells + n, nFirst + n, nCount - n, nRow, falloff);
}

void FalloffPiece(uint16_t* pCells, size_t nFirst, size_t nCount, size_t nRow, const TFalloff& falloff,
                  const TFalloffPiece& piece) {
    const hn::CappedTag<float, CELL_MARGIN> d;
    const hn::RebindToSigned<decltype(d)> dInt;
    const hn::Rebind<uint16_t, decltype(d)> dCell;
    const size_t nStep = hn::Lanes(d);
    const auto scale = hn::Set(d, piece.fScale);
    const auto base = hn::Set(dInt, piece.nBase);
    const auto safe = hn::Set(d, 0.5f - MAX_PIECE_ERROR);
    const auto y = static_cast<int32_t>(2 * nRow + 1);
    const auto x = hn::Add(hn::ShiftLeft<1>(hn::Iota(dInt, static_cast<int32_t>(nFirst))), hn::Set(dInt, 1));
    // Squares by their differences: (x + 2m)^2 - x^2 is 4m(x + m).
    const auto m = static_cast<int32_t>(nStep);
    auto u = hn::Add(hn::Mul(x, x), hn::Set(dInt, y * y - piece.nCentre));
    auto du = hn::Mul(hn::Add(x, hn::Set(dInt, m)), hn::Set(dInt, 4 * m));
    const auto ddu = hn::Set(dInt, 8 * m * m);
    for (size_t n = 0; n < nCount; n += nStep) {
        const auto t = hn::Mul(hn::ConvertTo(d, u), scale);
        auto v = hn::Set(d, piece.afTerms[TFalloffPiece::TERMS - 1]);
        for (size_t k = TFalloffPiece::TERMS - 1; k-- > 0;)
            v = hn::MulAdd(v, t, hn::Set(d, piece.afTerms[k]));
        const auto whole = hn::NearestInt(v);
        const auto off = hn::Abs(hn::Sub(v, hn::ConvertTo(d, whole)));
        if (HWY_LIKELY(hn::AllTrue(d, hn::Lt(off, safe))))
            hn::StoreU(hn::DemoteTo(dCell, hn::Add(whole, base)), dCell, pCells + n);
        else
            Falloff(pCells + n, nFirst + n, nStep, nRow, falloff);
        u = hn::Add(u, du);
        du = hn::Add(du, ddu);
    }
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

const TStampKernels* GetStampKernels() {
    static constexpr TStampKernels kernels{Accumulate, Falloff, FalloffPiece, AddCells};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetStampKernels);

const TStampKernels& VectorStampKernels() { return *HWY_DYNAMIC_DISPATCH(GetStampKernels)(); }
#endif
