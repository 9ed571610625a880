#include "core/ImageFile/PsdPixels.h"

#include "core/ImageFile/PackBits.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "core/RasterBuffer/PlaneKind.h"
#include "core/RasterKernel/ResolveKernel.h"

#include <algorithm>
#include <vector>

namespace {

TConstColorPixels PixelsOf(const CRasterBlockBuffer& tile) {
    if (const auto* pColor = dynamic_cast<const CColorRasterBlockBuffer*>(&tile)) return pColor->Pixels();
    const TConstGreyPixels px = static_cast<const CMonoRasterBlockBuffer&>(tile).Pixels();
    return {px.pGrey, px.pGrey, px.pGrey, px.pA};
}

// Calls `fn(index in the tile, canvas position, length)` for each row of the tile that lies on the canvas.
template <class Function>
void ForEachRow(const CRasterBlockBuffer& tile, CSize szCanvas, Function fn) {
    const CRect rc = tile.GetRect().Intersect({{0, 0}, szCanvas});
    for (int32_t y = rc.top; y < rc.bottom; ++y)
        fn(static_cast<size_t>(y - rc.top) * static_cast<size_t>(tile.GetSize().cx), CPoint{rc.left, y},
           static_cast<size_t>(rc.Width()));
}

// The value of a blank tile of a record's layer. False when it is empty.
bool PaintRecord(const TPsdRecord& record, CRasterBlockBuffer& tile) {
    CLayerBuffer& layer = *record.pLayer;
    if (record.kind == EPsdRecord::Picture) {
        if (!layer.GetPicture().HasPicture(tile.GetPosition())) return false;
        // Clipping leaves colours in transparent pixels; they are cleared while copying.
        const auto spPicture = tile.CreateBlank(tile.GetSize());
        layer.GetPicture().PaintPicture(*spPicture);
        spPicture->BlendWith(tile, 255, nullptr);
        return true;
    }
    if (!layer.PrepareOwn(tile.GetPosition())) return false;
    layer.RenderOwn(tile);
    return true;
}

// One row of blocks of a layer, in the order of the channels.
class CBand {
public:
    explicit CBand(CSize szCanvas)
        : m_szCanvas(szCanvas), m_nRow(static_cast<size_t>(szCanvas.cx)),
          m_nPlane(m_nRow * static_cast<size_t>(DEFAULT_BLOCKSIZE.cy)), m_vBytes(m_nPlane * 4) {}

    void Clear() { std::fill(m_vBytes.begin(), m_vBytes.end(), uint8_t{0}); }
    void Put(const CRasterBlockBuffer& tile) {
        const TConstColorPixels px = PixelsOf(tile);
        const uint8_t* const pChannels[] = {px.pA, px.pR, px.pG, px.pB};
        ForEachRow(tile, m_szCanvas, [&](size_t nIndex, CPoint pt, size_t nCount) {
            const size_t nRow = static_cast<size_t>(pt.y % DEFAULT_BLOCKSIZE.cy);
            for (size_t n = 0; n < 4; ++n)
                std::copy_n(pChannels[n] + nIndex, nCount,
                            m_vBytes.data() + n * m_nPlane + nRow * m_nRow + pt.x);
        });
    }
    const uint8_t* GetRow(size_t nChannel, int32_t y) const {
        return m_vBytes.data() + nChannel * m_nPlane + static_cast<size_t>(y % DEFAULT_BLOCKSIZE.cy) * m_nRow;
    }

private:
    CSize m_szCanvas;
    size_t m_nRow;
    size_t m_nPlane;
    std::vector<uint8_t> m_vBytes;
};

void PackRow(std::string& strChannel, int32_t y, const uint8_t* pRow, size_t nCount) {
    const size_t nOld = strChannel.size();
    AppendPackBits(strChannel, pRow, nCount);
    const size_t nLength = strChannel.size() - nOld;
    const size_t nEntry = 2 + 2 * static_cast<size_t>(y);
    strChannel[nEntry] = static_cast<char>(nLength >> 8);
    strChannel[nEntry + 1] = static_cast<char>(nLength);
}

} // namespace

std::array<std::string, 4> PackPsdChannels(const TPsdRecord& record, IProgress& progress) {
    const CSize sz = record.pLayer->GetSize();
    std::array<std::string, 4> channels;
    for (std::string& strChannel : channels) {
        strChannel.assign(2 + 2 * static_cast<size_t>(sz.cy), '\0');
        strChannel[1] = 1; // rows are packed
    }
    // Stays empty; it only creates tiles of the right kind.
    const auto spPlane = CreatePlane(record.pLayer->GetCanvas()->IsColorPicture(), sz, DEFAULT_BLOCKSIZE);
    CBand band(sz);
    for (CPoint pt; pt.y < sz.cy; pt.y += DEFAULT_BLOCKSIZE.cy) {
        band.Clear();
        for (pt.x = 0; pt.x < sz.cx; pt.x += DEFAULT_BLOCKSIZE.cx) {
            const auto spTile = spPlane->CreateBlock(pt);
            if (PaintRecord(record, *spTile)) band.Put(*spTile);
        }
        const int32_t yEnd = std::min(pt.y + DEFAULT_BLOCKSIZE.cy, sz.cy);
        for (size_t n = 0; n < channels.size(); ++n)
            for (int32_t y = pt.y; y < yEnd; ++y)
                PackRow(channels[n], y, band.GetRow(n, y), static_cast<size_t>(sz.cx));
        progress.Advance(static_cast<uint64_t>(yEnd - pt.y));
    }
    return channels;
}

void ResolvePsdPicture(CCanvasBuffer& canvas, uint8_t* pPlanes, IProgress& progress) {
    const CSize sz = canvas.GetSize();
    const size_t nPlane = static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy);
    const auto spPicture = canvas.Flatten(progress);
    spPicture->ForEachBlock([&](CPoint ptBlock) {
        const auto spTile = spPicture->GetBlock(ptBlock, false);
        if (!spTile) return;
        const TConstColorPixels px = PixelsOf(*spTile);
        const uint8_t* const pChannels[] = {px.pR, px.pG, px.pB};
        ForEachRow(*spTile, sz, [&](size_t nIndex, CPoint pt, size_t nCount) {
            uint8_t* pOut = pPlanes + static_cast<size_t>(pt.y) * static_cast<size_t>(sz.cx) + pt.x;
            for (size_t i = 0; i < nCount; ++i) {
                const uint32_t uCoverage = CoverageOf(px.pA[nIndex + i]);
                for (size_t n = 0; n < 3; ++n)
                    pOut[n * nPlane + i] = ResolveOnWhite(pChannels[n][nIndex + i], uCoverage);
            }
        });
    });
}
