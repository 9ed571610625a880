// The one loop that carries a tile's samples to the screen copy.
#pragma once

#include "core/GDIBuffer/GDIBuffer.h"
#include "core/GDIBuffer/ScreenMap.h"

/// Calls `resolve(index in the tile, target pixel's B byte)` for every target pixel that samples the tile at
/// `rcTile`.
template <class Resolve>
void DrawSamples(CGDIBuffer& target, const CScreenMap& map, const CRect& rcTile, Resolve resolve) {
    const CRect rc = map.ToTarget(rcTile);
    const int32_t nWidth = rcTile.Width();
    for (int32_t y = rc.top; y < rc.bottom; ++y) {
        uint8_t* pBgr = target.GetPixelPtr({rc.left, y});
        const int32_t nRow = map.AtRow(y);
        for (int32_t x = rc.left; x < rc.right; ++x, pBgr += 3) {
            const int32_t u = (map.IsSwapped() ? nRow : map.AtColumn(x)) - rcTile.left;
            const int32_t v = (map.IsSwapped() ? map.AtColumn(x) : nRow) - rcTile.top;
            resolve(static_cast<size_t>(v) * static_cast<size_t>(nWidth) + static_cast<size_t>(u), pBgr);
        }
    }
}
