// With s = c + u the curve is exp(a0 + a1 u + a2 u^2 + ...), where a root's series gives the a; so its own
// series e follows from k e_k = sum of j a_j e_(k-j). The same with the absolute values of the a never lies
// below it, and as a whole it is known in closed form: what its first terms leave of that bounds the error of
// cutting the series off. So which stretches there are may differ from one machine to the next, the cells
// not.
#include "core/RasterStamp/FalloffPieces.h"

#include "core/Base/StableMath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace {

// Near the centre the root's series converges badly, and there are few cells.
constexpr uint64_t FIRST_SQUARE = 128 * 128;
// The part of a piece's allowed error; the rest is for its evaluation in single precision.
constexpr double MAX_REMAINDER = MAX_PIECE_ERROR / 4;
constexpr int64_t LARGEST_HALF = int64_t{1} << 22; // largest integers that are exact in single precision

using TSeries = std::array<double, TFalloffPiece::TERMS>;

TSeries ExpOf(double dFirst, const TSeries& a) {
    TSeries e{dFirst};
    for (size_t k = 1; k < e.size(); ++k) {
        for (size_t j = 1; j <= k; ++j) e[k] += static_cast<double>(j) * a[j] * e[k - j];
        e[k] /= static_cast<double>(k);
    }
    return e;
}

double SumOf(const TSeries& series) {
    double d = 0;
    for (size_t k = series.size(); k-- > 0;) d += series[k];
    return d;
}

// The piece for nCentre - nHalf to nCentre + nHalf; nullopt where it is not accurate enough.
std::optional<TFalloffPiece> PieceAt(const TFalloff& falloff, int64_t nCentre, int64_t nHalf) {
    const auto dCentre = static_cast<double>(nCentre);
    const auto dHalf = static_cast<double>(nHalf);
    const double dRoot = std::sqrt(dCentre);
    const double dOff = dRoot - falloff.dInner;
    const double dRatio = dHalf / dCentre;
    // Terms in u / nHalf. Those of the root: 1/2, -1/8, 1/16, -5/128 of its value.
    const double dRootRate = -2 * falloff.dFactor * falloff.dInner * dRoot;
    TSeries a{0, falloff.dFactor * dHalf * (dOff / dRoot), -dRootRate / 8, dRootRate / 16,
              -dRootRate * 5 / 128};
    TSeries aAbs{};
    double dPower = dRatio;
    for (size_t k = 2; k < a.size(); ++k) a[k] *= dPower *= dRatio;
    for (size_t k = 1; k < a.size(); ++k) aAbs[k] = std::abs(a[k]);
    const double dMiddle = StableExp(falloff.dFactor * (dOff * dOff)) * CELL_FULL;
    const double dMost = dMiddle * std::exp(aAbs[1] + dRootRate * (1 - std::sqrt(1 - dRatio) - dRatio / 2));
    if (dMost - dMiddle > MAX_PIECE_SPAN || dMost - SumOf(ExpOf(dMiddle, aAbs)) > MAX_REMAINDER) return {};
    TFalloffPiece piece{
        static_cast<int32_t>(nCentre), static_cast<float>(1 / dHalf), static_cast<int32_t>(dMiddle), {}};
    TSeries e = ExpOf(dMiddle, a);
    e[0] -= piece.nBase;
    std::transform(e.begin(), e.end(), piece.afTerms.begin(), [](double d) { return static_cast<float>(d); });
    return piece;
}

} // namespace

CFalloffPieces::CFalloffPieces(const TFalloff& falloff, uint64_t uInner, uint64_t uOuter) {
    constexpr size_t NOT_KNOWN = std::numeric_limits<size_t>::max();
    const auto nLast = static_cast<int64_t>(uOuter);
    auto nFrom = static_cast<int64_t>(std::max(uInner, FIRST_SQUARE));
    m_vStretches.push_back({static_cast<uint64_t>(std::min(nFrom, nLast)), NOT_KNOWN, {}});
    for (int64_t nHalf = LARGEST_HALF; nFrom < nLast;) {
        const auto piece = PieceAt(falloff, nFrom + nHalf, nHalf);
        if (!piece) {
            nHalf -= (nHalf + 3) / 4;
            if (nHalf == 0) break;
            continue;
        }
        nFrom += 2 * nHalf;
        m_vStretches.push_back({static_cast<uint64_t>(std::min(nFrom, nLast)), NOT_KNOWN, *piece});
        nHalf = std::min(nHalf * 2, LARGEST_HALF);
    }
    for (TStretch& stretch : m_vStretches)
        stretch.nEnd = static_cast<size_t>(std::sqrt(static_cast<double>(stretch.uEnd))) / 2 + 1;
}

void CFalloffPieces::SetRow(size_t nRow) {
    m_nRow = nRow;
    const uint64_t uRow = (2 * nRow + 1) * (2 * nRow + 1);
    for (size_t i = m_nFirst; i < m_vStretches.size(); ++i) {
        TStretch& stretch = m_vStretches[i];
        size_t n = stretch.nEnd;
        while (n > 0 && (2 * n - 1) * (2 * n - 1) + uRow > stretch.uEnd) --n;
        stretch.nEnd = n;
        if (n <= nRow && i == m_nFirst) ++m_nFirst;
    }
}

void CFalloffPieces::Fill(uint16_t* pCells, size_t nFirst, size_t nEnd, const TFalloff& falloff) const {
    size_t n = nFirst;
    for (size_t i = m_nFirst; i < m_vStretches.size() && n < nEnd; ++i) {
        const TStretch& stretch = m_vStretches[i];
        const size_t nTo = std::min(stretch.nEnd, nEnd);
        if (nTo <= n) continue;
        if (stretch.piece.fScale == 0)
            StampKernels().pFalloff(pCells + (n - nFirst), n, nTo - n, m_nRow, falloff);
        else
            StampKernels().pFalloffPiece(pCells + (n - nFirst), n, nTo - n, m_nRow, falloff, stretch.piece);
        n = nTo;
    }
    if (n < nEnd) StampKernels().pFalloff(pCells + (n - nFirst), n, nEnd - n, m_nRow, falloff);
}
