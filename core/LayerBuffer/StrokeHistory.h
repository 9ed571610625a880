// Undo of paint on a layer's pixels.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/TileSwap.h"

/// Tiles of a raster layer were replaced.
class CCommitStrokeBufferHistory : public CHistory {
public:
    /// `before` is a shallow copy of `spRaster` from before the change.
    CCommitStrokeBufferHistory(std::wstring strName, CRasterBuffer& before,
                               const boost::shared_ptr<CRasterBuffer>& spRaster)
        : CHistory(std::move(strName)), m_tiles(before, spRaster) {}

    void Undo() override { m_tiles.Swap(); }
    void Redo() override { m_tiles.Swap(); }

protected:
    size_t CountBytes() const override {
        return m_tiles.CountBytes([](CPoint, const CRasterBlockBuffer&) { return true; });
    }

private:
    CTileSwap m_tiles;
};
