#include "core/ImageOperation/LevelHistogram.h"

#include "core/Base/Parallel.h"
#include "core/ImageOperation/PixelOperation.h"
#include "core/RasterBuffer/SelectBuffer.h"

#include <algorithm>
#include <vector>

namespace {

// Counts the pixels of a tile that lie inside the plane.
void CountTile(TLevelCounts& aCounts, CRasterBlockBuffer& tile, const uint8_t* pMask, CSize szInside,
               uint32_t uChannels) {
    const TFlatPixels pixels = FlatPixelsOf(tile, pMask);
    std::vector<const uint8_t*> vPlanes;
    for (size_t n = 0; n < pixels.apPlanes.size(); ++n)
        if (pixels.apPlanes[n] && uChannels >> n & 1) vPlanes.push_back(pixels.apPlanes[n]);
    const auto nWidth = static_cast<size_t>(std::min(szInside.cx, tile.GetSize().cx));
    const auto nStride = static_cast<size_t>(tile.GetSize().cx);
    const uint8_t* pAlpha = pixels.apPlanes[CHANNEL_ALPHA];
    for (int32_t y = 0; y < std::min(szInside.cy, tile.GetSize().cy); ++y) {
        CountLevels(aCounts, vPlanes.data(), vPlanes.size(), pAlpha, pMask, nWidth);
        for (const uint8_t*& p : vPlanes) p += nStride;
        pAlpha += nStride;
        if (pMask) pMask += nStride;
    }
}

} // namespace

TLevelCounts CountPicture(CRasterBuffer& plane, CSelectBuffer* pSelect, uint32_t uChannels) {
    const CSize szBlocks = plane.GetBufferSize(), sz = plane.GetSize();
    std::vector<TLevelCounts> vRows(static_cast<size_t>(szBlocks.cy));
    ForEachIndex(vRows.size(), AvailableThreads(), [&](size_t nRow) {
        vRows[nRow].fill(0);
        for (int32_t nColumn = 0; nColumn < szBlocks.cx; ++nColumn) {
            const CPoint pt = plane.BlockCorner(nColumn, static_cast<int32_t>(nRow));
            const auto spTile = plane.GetBlock(pt, false);
            const CRasterBlockBuffer* pMask = pSelect ? pSelect->GetMaskTile(pt) : nullptr;
            if (spTile && (pMask || !pSelect))
                CountTile(vRows[nRow], *spTile, pMask ? pMask->GetPixelPtr({0, 0}) : nullptr,
                          {sz.cx - pt.x, sz.cy - pt.y}, uChannels);
        }
    });
    TLevelCounts aCounts{};
    for (const TLevelCounts& row : vRows) std::ranges::transform(aCounts, row, aCounts.begin(), std::plus{});
    return aCounts;
}

void LimitCounts(TLevelCounts& aCounts, CSize szPicture) {
    using TCount = TLevelCounts::value_type;
    const int64_t nPercent = int64_t{szPicture.cx} * szPicture.cy / 100;
    const auto uMost = static_cast<TCount>(std::max<int64_t>(1, nPercent));
    for (TCount& uCount : aCounts) uCount = std::min(uCount, uMost);
}
