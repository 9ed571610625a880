#include "core/ImageOperation/PixelOperation.h"

#include "core/Base/Failure.h"
#include "core/Base/Parallel.h"
#include "core/LayerBuffer/RasterGuard.h"
#include "core/LayerBuffer/StrokeHistory.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "core/RasterBuffer/SelectBuffer.h"

#include <boost/make_shared.hpp>

#include <cstring>
#include <vector>

namespace {

using TTilePtr = boost::shared_ptr<CRasterBlockBuffer>;

// The changed tile; null when it stays as it is.
TTilePtr ChangeTile(const CRasterBlockBuffer& tile, const CRasterBlockBuffer* pMask,
                    const TPixelOperation& fnOperation) {
    TTilePtr spNew = tile.Clone();
    fnOperation(FlatPixelsOf(*spNew, pMask ? pMask->GetPixelPtr({0, 0}) : nullptr));
    const bool bSame =
        std::memcmp(spNew->GetPixelPtr({0, 0}), tile.GetPixelPtr({0, 0}), tile.GetBytes()) == 0;
    return bSame ? TTilePtr() : spNew;
}

} // namespace

size_t ChannelsOf(const CRasterBuffer& plane) {
    if (dynamic_cast<const CColorRasterBuffer*>(&plane)) return COLOR_CHANNELS;
    if (dynamic_cast<const CMonoRasterBuffer*>(&plane)) return GREY_CHANNELS;
    throw internal_error(L"Invalid raster buffer");
}

TFlatPixels FlatPixelsOf(CRasterBlockBuffer& tile, const uint8_t* pMask) {
    const size_t nPlane = tile.GetPlaneBytes();
    const size_t nPlanes = tile.GetBytes() / nPlane;
    if (nPlanes != GREY_CHANNELS && nPlanes != COLOR_CHANNELS) throw internal_error(L"Invalid raster buffer");
    TFlatPixels pixels{.pMask = pMask, .nCount = nPlane};
    // A tile's planes stand in the opposite order: alpha is the last.
    for (size_t n = 0; n < nPlanes; ++n)
        pixels.apPlanes[n] = tile.GetPixelPtr({0, 0}) + (nPlanes - 1 - n) * nPlane;
    return pixels;
}

TPixelOperation LevelOperation(const TLevelTable& table, uint32_t uChannels) {
    return [table, uChannels](const TFlatPixels& pixels) {
        for (size_t n = 0; n < pixels.apPlanes.size(); ++n)
            if (pixels.apPlanes[n] && uChannels >> n & 1)
                ApplyLevels(pixels.apPlanes[n], pixels.apPlanes[n], pixels.pMask, table, pixels.nCount);
    };
}

TPixelOperation HsbOperation(const THsbValues& values) {
    return [tables = MakeHsbTables(values)](const TFlatPixels& pixels) {
        const auto& ap = pixels.apPlanes;
        if (!pixels.IsColor())
            return AdjustHsb(ap[CHANNEL_GREY], ap[CHANNEL_GREY], pixels.pMask, tables, pixels.nCount);
        AdjustHsb({ap[CHANNEL_RED], ap[CHANNEL_GREEN], ap[CHANNEL_BLUE], ap[CHANNEL_ALPHA]},
                  {ap[CHANNEL_RED], ap[CHANNEL_GREEN], ap[CHANNEL_BLUE], ap[CHANNEL_ALPHA]}, pixels.pMask,
                  tables, pixels.nCount);
    };
}

bool ChangePixels(const boost::shared_ptr<CRasterLayerBuffer>& spLayer, const TPixelOperation& fnOperation,
                  std::wstring strLabel, IProgress& progress) {
    const TCanvasPtr spCanvas = spLayer->GetCanvas();
    const auto spRaster = spLayer->GetRaster();
    const auto spSelect = spCanvas->GetSelect();
    const CSize szRaster = spRaster->GetSize();
    const auto* rstSelect = spSelect ? &spSelect->GetMask() : nullptr;
    if (rstSelect) SELF_CHECK(illegal_data, szRaster == rstSelect->GetSize());
    CRasterGuard guard(spRaster);
    bool bAny = false;
    const CSize szBlocks = spRaster->GetBufferSize();
    progress.Begin(L"画像を処理しています", static_cast<uint64_t>(szBlocks.cy));
    for (int32_t nRow = 0; nRow < szBlocks.cy; ++nRow) {
        std::vector<TTilePtr> vNew(static_cast<size_t>(szBlocks.cx));
        ForEachIndex(vNew.size(), AvailableThreads(), [&](size_t nColumn) {
            const CPoint pt = spRaster->BlockCorner(static_cast<int32_t>(nColumn), nRow);
            const auto spTile = spRaster->GetBlock(pt, false);
            const CRasterBlockBuffer* pMask = spSelect ? spSelect->GetMaskTile(pt) : nullptr;
            if (spTile && (pMask || !spSelect)) vNew[nColumn] = ChangeTile(*spTile, pMask, fnOperation);
        });
        for (size_t nColumn = 0; nColumn < vNew.size(); ++nColumn) {
            if (!vNew[nColumn]) continue;
            spRaster->SetBlock(spRaster->BlockCorner(static_cast<int32_t>(nColumn), nRow), vNew[nColumn]);
            bAny = true;
        }
        progress.Advance();
    }
    if (!bAny) return false;
    spCanvas->GetHistory().Register(
        boost::make_shared<CCommitStrokeBufferHistory>(std::move(strLabel), guard.GetBefore(), spRaster));
    guard.Keep();
    return true;
}
