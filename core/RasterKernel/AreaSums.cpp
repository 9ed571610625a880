#include "core/RasterKernel/AreaSums.h"

#include "core/RasterKernel/ResolveKernel.h"

#include <algorithm>

namespace {

constexpr size_t CHANNELS = 3;
constexpr size_t SCREEN_BYTES = 4;

} // namespace

// In units of 1 / nFrom of a small pixel, a pixel is nTo long and a small one nFrom.
CAreaSums::TAxis::TAxis(int32_t nFrom_, int32_t nTo_) : nFrom(nFrom_), nTo(nTo_) {
    vParts.reserve(static_cast<size_t>(nFrom));
    for (int64_t n = 0; n < nFrom; ++n) {
        const int64_t nFirst = n * nTo / nFrom;
        const auto uFirst = static_cast<uint32_t>(std::min<int64_t>(nTo, (nFirst + 1) * nFrom - n * nTo));
        vParts.push_back({static_cast<int32_t>(nFirst), uFirst, static_cast<uint32_t>(nTo) - uFirst});
    }
}

CAreaSums::CAreaSums(CSize szFrom, CSize szTo)
    : m_across(szFrom.cx, szTo.cx), m_down(szFrom.cy, szTo.cy),
      m_vSums(CHANNELS * static_cast<size_t>(szTo.cx) * static_cast<size_t>(szTo.cy)) {}

// Rows are summed first, in 32 bits: the weights of all that a small pixel covers are nFrom, times a byte.
void CAreaSums::Add(const CRect& rc, const std::array<const uint8_t*, CHANNELS>& apChannels,
                    const uint8_t* pAlpha) {
    const CRect rcIn = rc.Intersect({0, 0, m_across.nFrom, m_down.nFrom});
    if (rcIn.IsEmpty()) return;
    const auto nWidth = static_cast<size_t>(rcIn.Width());
    std::vector<uint32_t> vInk(nWidth), vNext(nWidth);
    for (size_t nChannel = 0; nChannel < CHANNELS; ++nChannel) {
        std::ranges::fill(vInk, 0);
        std::ranges::fill(vNext, 0);
        for (int32_t y = rcIn.top; y < rcIn.bottom; ++y) {
            const TPart& part = m_down.vParts[static_cast<size_t>(y)];
            const ptrdiff_t nOffset = ptrdiff_t{y - rc.top} * rc.Width() + (rcIn.left - rc.left);
            const uint8_t* pFrom = apChannels[nChannel] + nOffset;
            const uint8_t* pCover = pAlpha + nOffset;
            for (size_t x = 0; x < nWidth; ++x) {
                const uint32_t uInk = 255u - ResolveOnWhite(pFrom[x], CoverageOf(pCover[x]));
                vInk[x] += uInk * part.uFirst;
                vNext[x] += uInk * part.uNext;
            }
            const bool bEnds =
                y + 1 == rcIn.bottom || m_down.vParts[static_cast<size_t>(y) + 1].nFirst != part.nFirst;
            if (!bEnds) continue;
            AddRow(rcIn, part.nFirst, nChannel, vInk);
            if (y + 1 == rcIn.bottom && part.uNext > 0) AddRow(rcIn, part.nFirst + 1, nChannel, vNext);
            vInk.swap(vNext);
            std::ranges::fill(vNext, 0);
        }
    }
}

void CAreaSums::AddRow(const CRect& rcIn, int32_t y, size_t nChannel, const std::vector<uint32_t>& vInk) {
    uint64_t* pRow =
        m_vSums.data() + static_cast<size_t>(y) * static_cast<size_t>(m_across.nTo) * CHANNELS + nChannel;
    const TPart* pPart = m_across.vParts.data() + rcIn.left;
    for (const uint32_t uInk : vInk) {
        uint64_t* pSum = pRow + static_cast<size_t>(pPart->nFirst) * CHANNELS;
        pSum[0] += uint64_t{uInk} * pPart->uFirst;
        if (pPart->uNext > 0) pSum[CHANNELS] += uint64_t{uInk} * pPart->uNext;
        ++pPart;
    }
}

std::vector<uint8_t> CAreaSums::GetPixels() const {
    const uint64_t uWhole = static_cast<uint64_t>(m_across.nFrom) * static_cast<uint64_t>(m_down.nFrom);
    std::vector<uint8_t> vPixels;
    vPixels.reserve(m_vSums.size() / CHANNELS * SCREEN_BYTES);
    for (auto it = m_vSums.begin(); it != m_vSums.end(); it += CHANNELS) {
        for (ptrdiff_t n = CHANNELS; n-- > 0;)
            vPixels.push_back(static_cast<uint8_t>(255 - (2 * it[n] + uWhole) / (2 * uWhole)));
        vPixels.push_back(255);
    }
    return vPixels;
}
