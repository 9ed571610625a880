#include "core/RasterBuffer/AlphaBuffer.h"

#include <array>

namespace {

CSize Doubled(CSize sz) { return {sz.cx * 2, sz.cy * 2}; }
CSize Halved(CSize sz) { return {sz.cx / 2, sz.cy / 2}; }

// The weighted sum of three values of a row, 0 where the row is absent or `u` beyond its end.
struct TRow {
    const uint16_t* p = nullptr;     ///< the row in the tile under the target
    const uint16_t* pNext = nullptr; ///< the row's first value in the tile to the right
    int32_t nLength = 0;

    uint32_t At(int32_t u) const { return u < nLength ? (p ? p[u] : 0u) : (pNext ? *pNext : 0u); }
    uint32_t Sum(int32_t u) const { return At(u) + 2 * At(u + 1) + At(u + 2); }
};

} // namespace

void CDoubleAlphaBuffer::Create(CSize szBuffer, CSize szBlock) {
    CAlphaBufferImpl<uint16_t>::Create(Doubled(szBuffer), Doubled(szBlock));
}

boost::shared_ptr<CRasterBuffer> CDoubleAlphaBuffer::CreateSized(CSize szBuffer, CSize szBlock) const {
    auto spPlane = boost::make_shared<CDoubleAlphaBuffer>();
    spPlane->Create(szBuffer, szBlock);
    return spPlane;
}

boost::shared_ptr<CRasterBuffer> CDoubleAlphaBuffer::CreateLike() const {
    return CreateSized(Halved(GetSize()), Halved(GetBlockSize()));
}

void CDoubleAlphaBuffer::BlendBlockInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const {
    const CSize szBlock = GetBlockSize();
    const CPoint ptFirst{dest.GetPosition().x * 2, dest.GetPosition().y * 2};
    // The tile under the target, its neighbours to the right, below, and both.
    std::array<const uint16_t*, 4> apTiles{};
    bool bAny = false;
    for (size_t n = 0; n < apTiles.size(); ++n) {
        const CPoint pt{ptFirst.x + (n % 2 ? szBlock.cx : 0), ptFirst.y + (n / 2 ? szBlock.cy : 0)};
        if (const CAlphaBlock16* pTile = FindBlock(pt)) apTiles[n] = pTile->GetAlpha();
        bAny = bAny || apTiles[n];
    }
    if (!bAny) return;
    const auto row = [&](int32_t v) {
        const size_t nFirst = v < szBlock.cy ? 0 : 2;
        const ptrdiff_t nOffset = static_cast<ptrdiff_t>(v % szBlock.cy) * szBlock.cx;
        const auto at = [&](const uint16_t* p) { return p ? p + nOffset : nullptr; };
        return TRow{at(apTiles[nFirst]), at(apTiles[nFirst + 1]), szBlock.cx};
    };
    CAlphaBlock16 reduced;
    reduced.Create(dest.GetSize(), dest.GetPosition());
    uint16_t* pOut = reduced.GetAlpha();
    for (int32_t j = 0; j < dest.GetSize().cy; ++j) {
        const TRow row0 = row(2 * j);
        const TRow row1 = row(2 * j + 1);
        const TRow row2 = row(2 * j + 2);
        for (int32_t i = 0; i < dest.GetSize().cx; ++i)
            *pOut++ = static_cast<uint16_t>((row0.Sum(2 * i) + 2 * row1.Sum(2 * i) + row2.Sum(2 * i)) >> 4);
    }
    reduced.BlendCoverage(dest, *this, pMask);
}
