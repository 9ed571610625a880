#include "core/RasterBuffer/AlphaBuffer.h"
#include "core/RasterKernel/HalveKernel.h"

#include <array>
#include <vector>

namespace {

CSize Doubled(CSize sz) { return {sz.cx * 2, sz.cy * 2}; }
CSize Halved(CSize sz) { return {sz.cx / 2, sz.cy / 2}; }

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
    SELF_CHECK(invalid_argument, dest.GetSize() == Halved(szBlock));
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
    // Coverage of 16 bits does nothing to a mask.
    if (dynamic_cast<const CAlphaBlock8*>(&dest)) return;
    const std::vector<uint16_t> vNothing(static_cast<size_t>(szBlock.cx));
    const auto row = [&](size_t nTile, int32_t v) {
        const uint16_t* p = apTiles[nTile + (v < szBlock.cy ? 0 : 2)];
        return p ? p + static_cast<ptrdiff_t>(v % szBlock.cy) * szBlock.cx : vNothing.data();
    };
    CAlphaBlock8 reduced;
    reduced.Create(dest.GetSize(), dest.GetPosition());
    const auto nCount = static_cast<size_t>(dest.GetSize().cx);
    for (int32_t j = 0; j < dest.GetSize().cy; ++j) {
        THalveRows rows{};
        for (int32_t n = 0; n < 3; ++n) {
            rows.apRows[n] = row(0, 2 * j + n);
            rows.auNext[n] = *row(1, 2 * j + n);
        }
        HalveKernels().pHalve(reduced.GetAlpha() + static_cast<size_t>(j) * nCount, rows, nCount);
    }
    reduced.BlendCoverage(dest, *this, pMask);
}
