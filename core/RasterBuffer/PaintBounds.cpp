#include "core/RasterBuffer/PaintBounds.h"

#include <algorithm>

namespace {

bool IsPaint(uint8_t uAlpha) { return uAlpha != 0; }

// The alpha plane is a tile's last one.
const uint8_t* AlphaOf(const CRasterBlockBuffer& tile) {
    return tile.GetPixelPtr({0, 0}) + tile.GetBytes() - tile.GetPlaneBytes();
}

} // namespace

bool HasPaint(const CRasterBlockBuffer& tile) {
    const uint8_t* pAlpha = AlphaOf(tile);
    return std::any_of(pAlpha, pAlpha + tile.GetPlaneBytes(), IsPaint);
}

CRect PaintBoundsOf(CRasterBuffer& plane) {
    CRect rcAll;
    plane.ForEachBlock([&](CPoint pt) {
        const CRect rc = CRect(pt, plane.GetBlockSize()).Intersect(plane.GetRect());
        // A block inside what was found adds nothing.
        if (rcAll.Union(rc) == rcAll) return;
        const auto spTile = plane.GetBlock(pt, false);
        if (!spTile) return;
        for (int32_t y = rc.top; y < rc.bottom; ++y) {
            const uint8_t* pRow =
                AlphaOf(*spTile) + static_cast<ptrdiff_t>(y - pt.y) * plane.GetBlockSize().cx;
            const uint8_t* pEnd = pRow + rc.Width();
            const uint8_t* pFirst = std::find_if(pRow, pEnd, IsPaint);
            if (pFirst == pEnd) continue;
            while (!pEnd[-1]) --pEnd;
            rcAll = rcAll.Union({rc.left + static_cast<int32_t>(pFirst - pRow), y,
                                 rc.left + static_cast<int32_t>(pEnd - pRow), y + 1});
        }
    });
    return rcAll;
}
