// Tiles of a plane that an undoable action replaced.
#pragma once

#include "core/RasterBuffer/RasterBuffer.h"

#include <boost/weak_ptr.hpp>

#include <utility>
#include <vector>

/// Keeps only the tiles that differ, and flags only their blocks when it exchanges them, so that the cost of
/// a small change does not depend on the layer's size.
class CTileSwap {
public:
    using TTilePtr = boost::shared_ptr<CRasterBlockBuffer>;

    /// Nothing to exchange.
    CTileSwap() = default;
    /// `before` is a shallow copy of `spRaster` from before the change.
    CTileSwap(CRasterBuffer& before, const boost::shared_ptr<CRasterBuffer>& spRaster)
        : m_wpRaster(spRaster) {
        spRaster->ForEachBlock([&](CPoint pt) {
            const TTilePtr spOld = before.GetBlock(pt, false);
            if (spOld != spRaster->GetBlock(pt, false)) m_vTiles.emplace_back(pt, spOld);
        });
    }
    /// Exchanges the tiles with the plane's; nothing when that is gone.
    void Swap() {
        const auto spRaster = m_wpRaster.lock();
        if (!spRaster) return;
        for (auto& [pt, spTile] : m_vTiles) spTile = spRaster->SetBlock(pt, spTile);
    }
    /// Memory of the tiles for which `fnCounts(pt, tile)` is true.
    template <class Function>
    size_t CountBytes(Function fnCounts) const {
        size_t nBytes = 0;
        for (const auto& [pt, spTile] : m_vTiles)
            nBytes += spTile && fnCounts(pt, *spTile) ? spTile->GetBytes() : 0;
        return nBytes;
    }

private:
    boost::weak_ptr<CRasterBuffer> m_wpRaster;
    std::vector<std::pair<CPoint, TTilePtr>> m_vTiles;
};
