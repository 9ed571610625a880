#include "core/PathSelect/StrokeForms.h"

#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/ImageFile/DibBlock.h"
#include "core/ImageFile/SvgLayers.h"
#include "core/PathObject/PathObjectFactory.h"

#include <boost/make_shared.hpp>

namespace {

constexpr uint32_t TAG_STROKES = MakeTag("STRK");
constexpr int32_t PIXEL_BYTES = 4;

// Writes a tile of coverage as pixels of one colour.
void WriteTile(IBitmap& bitmap, const CAlphaBlock8& tile, CPoint ptAt, TColor color) {
    const CSize sz = tile.GetRect().Size();
    TLockedBits bits;
    if (!bitmap.LockBits(CRect(ptAt, sz), ELockMode::Write, bits)) throw std::bad_alloc();
    for (int32_t y = 0; y < sz.cy; ++y) {
        uint8_t* p = bits.pData + std::ptrdiff_t{y} * bits.nStride;
        const uint8_t* pAlpha = tile.GetPixelPtr({0, y});
        for (int32_t x = 0; x < sz.cx; ++x, p += PIXEL_BYTES) {
            if (pAlpha[x] == 0) continue;
            p[0] = BlueOf(color);
            p[1] = GreenOf(color);
            p[2] = RedOf(color);
            p[3] = pAlpha[x];
        }
    }
    bitmap.UnlockBits();
}

// Tile by tile: the coverage of all together would be as large as the canvas.
TDibBytes MakePicture(const TCopiedStrokes& strokes) {
    const CRect rc = CoveredPixels(BoundsOfPaths(strokes.vPaths)).Intersect(CRect({0, 0}, strokes.szCanvas));
    if (rc.IsEmpty()) return {};
    const TDibBlock block = CreateDibBlock(rc.Size());
    CPathFill fill;
    for (int32_t y = rc.top; y < rc.bottom; y += DEFAULT_BLOCKSIZE.cy)
        for (int32_t x = rc.left; x < rc.right; x += DEFAULT_BLOCKSIZE.cx) {
            const CRect rcTile = CRect({x, y}, DEFAULT_BLOCKSIZE).Intersect(rc);
            CAlphaBlock8 tile;
            tile.Create(rcTile.Size(), rcTile.TopLeft());
            for (const auto& spPath : strokes.vPaths)
                if (!CoveredPixels(spPath->RectIncludingPath()).Intersect(rcTile).IsEmpty())
                    spPath->RasterizePath(fill, strokes.szCanvas, tile);
            WriteTile(*block.spPixels, tile, rcTile.TopLeft() - rc.TopLeft(), strokes.color);
        }
    return block.spBytes;
}

} // namespace

CRect BoundsOfPaths(const CVectorLayerBuffer::TPaths& vPaths) {
    CRect rc;
    for (const auto& spPath : vPaths) rc = rc.Union(spPath->RectIncludingPath());
    return rc;
}

TStrokeBytes WriteStrokes(const TCopiedStrokes& strokes) {
    CSerializer chunk;
    chunk.SetTag(TAG_STROKES, 0);
    chunk.WriteSize(strokes.szCanvas);
    chunk.WriteInt32(static_cast<int32_t>(strokes.color));
    chunk.WriteInt32(static_cast<int32_t>(strokes.vPaths.size()));
    for (const auto& spPath : strokes.vPaths) chunk.WriteChunk(spPath->Serialize());
    CSerializer file;
    file.WriteTop(std::move(chunk));
    const TBytes vBytes = file.GetPayload();
    return boost::make_shared<std::string>(vBytes.begin(), vBytes.end());
}

TCopiedStrokes ReadStrokes(const TStrokeBytes& spStrokes) {
    CDeserializer file(boost::make_shared<TBytes>(spStrokes->begin(), spStrokes->end())), chunk;
    file.ReadTop(chunk);
    chunk.ExpectTag(TAG_STROKES);
    TCopiedStrokes strokes;
    strokes.szCanvas = chunk.ReadSize();
    strokes.color = static_cast<TColor>(chunk.ReadInt32()) & 0xFFFFFF;
    const auto uCount = static_cast<uint32_t>(chunk.ReadInt32());
    const auto isSide = [](int32_t n) { return n > 0 && n <= MAX_DOCUMENT_SIDE; };
    if (!isSide(strokes.szCanvas.cx) || !isSide(strokes.szCanvas.cy) || uCount == 0)
        throw deserialize_error();
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer path;
        chunk.ReadChunk(path);
        strokes.vPaths.push_back(CreatePathObjectByTag(path.GetTag()));
        strokes.vPaths.back()->Deserialize(path);
        if (strokes.vPaths.back()->GetStream().ControlPointCount() == 0) throw deserialize_error();
    }
    chunk.ExpectEnd();
    return strokes;
}

TStrokeForms MakeStrokeForms(const TCopiedStrokes& strokes) {
    return {WriteStrokes(strokes), WritePathsSvg(strokes.vPaths, strokes.color, strokes.szCanvas),
            MakePicture(strokes)};
}
