// Undo of paint on a layer's pixels.
#pragma once

#include "core/History/History.h"
#include "core/RasterBuffer/RasterBuffer.h"

#include <boost/weak_ptr.hpp>

#include <utility>
#include <vector>

/// Tiles of a raster layer were replaced. Keeps only the tiles that differ, and flags only their blocks
/// when it exchanges them, so that the cost of a small stroke does not depend on the layer's size.
class CCommitStrokeBufferHistory : public CHistory {
public:
    /// `before` is a shallow copy of `spRaster` from before the change.
    CCommitStrokeBufferHistory(std::wstring strName, CRasterBuffer& before,
                               const boost::shared_ptr<CRasterBuffer>& spRaster)
        : CHistory(std::move(strName)), m_wpRaster(spRaster) {
        spRaster->ForEachBlock([&](CPoint pt) {
            const auto spOld = before.GetBlock(pt, false);
            if (spOld != spRaster->GetBlock(pt, false)) m_vTiles.emplace_back(pt, spOld);
        });
    }

    void Undo() override { Swap(); }
    void Redo() override { Swap(); }

protected:
    size_t CountBytes() const override {
        size_t nBytes = 0;
        for (const auto& [pt, spTile] : m_vTiles) nBytes += spTile ? spTile->GetBytes() : 0;
        return nBytes;
    }

private:
    void Swap() {
        const auto spRaster = m_wpRaster.lock();
        if (!spRaster) return;
        for (auto& [pt, spTile] : m_vTiles) spTile = spRaster->SetBlock(pt, spTile);
    }

    boost::weak_ptr<CRasterBuffer> m_wpRaster;
    std::vector<std::pair<CPoint, boost::shared_ptr<CRasterBlockBuffer>>> m_vTiles;
};
