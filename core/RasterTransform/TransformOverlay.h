// The preview of a transform over the layer's pixels, which is also what becomes of them.
#pragma once

#include "core/LayerBuffer/FloatingPixels.h"
#include "core/RasterTransform/TransformRender.h"

#include <utility>
#include <vector>

/// Tiles with the corners of their blocks; null for a block that becomes empty.
using TTransformTiles = std::vector<std::pair<CPoint, boost::shared_ptr<CRasterBlockBuffer>>>;

class CTransformOverlay : public IRasterOverlay {
public:
    /// `spRaster` is the layer's plane, which the source is a copy of, or, when `spFloat` is not null, that
    /// is those floating pixels.
    CTransformOverlay(const TTransformSource& source, const boost::shared_ptr<CRasterBuffer>& spRaster,
                      const boost::shared_ptr<CFloatingPixels>& spFloat);

    const TTransformSource& GetSource() const { return m_source; }
    const CTransformMap& GetMap() const { return m_map; }
    bool IsIdentity() const { return m_map.GetQuad() == QuadOf(m_source.GetHome()); }
    /// Maps the source to a usable quadrilateral.
    void SetQuad(const TQuad& quad);

    /// The identity shows the layer's own pixels, or the float itself.
    bool CoversBlock(CPoint pt) const override;
    void PaintInto(CRasterBlockBuffer& work) const override;
    void PassFlags(CBoolMatrix& matrix) override { m_dirty.PassTo(matrix); }
    void ClearFlag(CPoint pt) override;

    /// The tiles that the layer's plane gets where they differ, on that many threads. Nothing is changed.
    TTransformTiles MakeTiles(size_t nThreads) const;

private:
    // Calls `fn(corner)` for each block that the preview may change.
    template <class Function>
    void ForEachTouched(Function fn) const;
    void FlagTouched();

    TTransformSource m_source;
    boost::shared_ptr<CRasterBuffer> m_spRaster;
    boost::shared_ptr<CFloatingPixels> m_spFloat;
    CTransformMap m_map;
    CBoolMatrix m_dirty;
};
