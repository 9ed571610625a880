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
    const auto nLast = static_cast<int64_t>(uOuter);
    auto nFrom = static_cast<int64_t>(std::max(uInner, FIRST_SQUARE));
    Append(std::min(nFrom, nLast), {});
    for (int64_t nHalf = LARGEST_HALF; nFrom < nLast;) {
        const auto piece = PieceAt(falloff, nFrom + nHalf, nHalf);
        if (!piece) {
            nHalf -= (nHalf + 3) / 4;
            if (nHalf == 0) break;
            continue;
        }
        nFrom += 2 * nHalf;
        Append(std::min(nFrom, nLast), *piece);
        nHalf = std::min(nHalf * 2, LARGEST_HALF);
    }
}

void CFalloffPieces::Append(int64_t nSquare, const TFalloffPiece& piece) {
    const auto nEnd = static_cast<size_t>(std::sqrt(static_cast<double>(nSquare))) / 2 + 1;
    const auto nLastCell = static_cast<int64_t>(2 * nEnd - 1);
    m_vStretches.push_back({nEnd, piece});
    m_vLimits.push_back({nSquare, nSquare - nLastCell * nLastCell});
}

void CFalloffPieces::SetRow(size_t nRow) {
    m_nRow = nRow;
    const auto nRowSquare = static_cast<int64_t>((2 * nRow + 1) * (2 * nRow + 1));
    TFalloffStretch* pStretches = m_vStretches.data();
    TLimit* pLimits = m_vLimits.data();
    for (size_t i = m_nFirst, nCount = m_vStretches.size(); i < nCount; ++i) {
        size_t nEnd = pStretches[i].nEnd;
        int64_t nLastRow = pLimits[i].nLastRow;
        // From row to row an end seldom moves by more than one cell, and as often as not by one: no branch.
        const auto nOne = static_cast<size_t>(nRowSquare > nLastRow);
        nLastRow += static_cast<int64_t>(8 * (nEnd - 1) & (0 - nOne));
        nEnd -= nOne;
        for (; nEnd > 0 && nRowSquare > nLastRow; --nEnd) nLastRow += static_cast<int64_t>(8 * (nEnd - 1));
        pStretches[i].nEnd = nEnd;
        pLimits[i].nLastRow = nEnd > 0 ? nLastRow : INT64_MAX;
    }
    while (m_nFirst < m_vStretches.size() && pStretches[m_nFirst].nEnd <= nRow) ++m_nFirst;
}

void CFalloffPieces::Fill(uint16_t* pCells, size_t nFirst, size_t nEnd, const TFalloff& falloff) const {
    StampKernels().pFalloffRow(pCells, nFirst, nEnd, m_nRow, falloff, m_vStretches.data() + m_nFirst,
                               m_vStretches.size() - m_nFirst);
}
