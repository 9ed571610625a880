#include "core/ImageOperation/RescalePlane.h"

#include "core/Base/Failure.h"

#include <algorithm>
#include <array>

namespace {

constexpr size_t MOST_CHANNELS = 4;

/// The destination's planes.
struct TTarget {
    const CRect& rc;
    uint8_t* const* apPlanes;
    ptrdiff_t nStride;
};

// Resamples a part of the destination from a tile that holds the pixels of rcFrom.
void RenderFrom(const CRasterBlockBuffer& tile, const CRect& rcFrom, const CRescaleMap& map,
                const CRect& rcPart, const TTarget& target) {
    const size_t nChannels = tile.GetBytes() / tile.GetPlaneBytes();
    SELF_CHECK(illegal_data, nChannels <= MOST_CHANNELS);
    std::array<const uint8_t*, MOST_CHANNELS> apFrom{};
    std::array<uint8_t*, MOST_CHANNELS> apTo{};
    for (size_t n = 0; n < nChannels; ++n) {
        apFrom[n] = tile.GetPixelPtr({0, 0}) + n * tile.GetPlaneBytes();
        apTo[n] = target.apPlanes[n] + (rcPart.top - target.rc.top) * target.nStride +
                  (rcPart.left - target.rc.left);
    }
    map.Render(apTo.data(), target.nStride, rcPart, apFrom.data(), rcFrom, nChannels);
}

// The destination pixels that a whole tile becomes; 0 when its edge does not fall between two of them.
int32_t PixelsOfTile(int32_t nTile, int32_t nFrom, int32_t nTo) {
    const bool bWhole = nFrom % nTo == 0 && nTile % (nFrom / nTo) == 0;
    return bWhole ? nTile / (nFrom / nTo) : 0;
}

} // namespace

bool RescaleRect(CRasterBuffer& from, const CRescaleMap& map, const CRect& rcTo, uint8_t* const* apTo,
                 ptrdiff_t nToStride) {
    const TTarget target{rcTo, apTo, nToStride};
    const CSize szTile = from.GetBlockSize(), szFrom = map.GetFrom(), szTo = map.GetTo();
    const CSize szPart{PixelsOfTile(szTile.cx, szFrom.cx, szTo.cx),
                       PixelsOfTile(szTile.cy, szFrom.cy, szTo.cy)};
    const CRect rcFrom = map.GetSource(rcTo);
    bool bAny = false;
    from.ForEachBlockIn(rcFrom, [&](CPoint pt) {
        const auto spTile = from.GetBlock(pt, false);
        bAny = bAny || spTile;
        if (!spTile || szPart.cx == 0 || szPart.cy == 0) return;
        // Whole tiles are reduced where they lie.
        const CPoint ptPart{pt.x / szTile.cx * szPart.cx, pt.y / szTile.cy * szPart.cy};
        RenderFrom(*spTile, CRect(pt, szTile), map, CRect(ptPart, szPart).Intersect(rcTo), target);
    });
    if (!bAny || (szPart.cx != 0 && szPart.cy != 0)) return bAny;
    const CRect rcTile({rcFrom.left / szTile.cx * szTile.cx, rcFrom.top / szTile.cy * szTile.cy}, szTile);
    if (rcTile.Intersect(rcFrom) == rcFrom)
        RenderFrom(*from.GetBlock(rcTile.TopLeft(), false), rcTile, map, rcTo, target);
    else
        RenderFrom(*from.ExtractBlock(rcFrom, false, nullptr), rcFrom, map, rcTo, target);
    return true;
}
