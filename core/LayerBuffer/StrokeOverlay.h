// A freehand stroke over a layer.
#pragma once

#include "core/LayerBuffer/LayerCanvas.h"
#include "core/LayerBuffer/RasterOverlay.h"
#include "core/RasterBuffer/SelectBuffer.h"
#include "core/RasterStroke/RasterStroke.h"

#include <boost/weak_ptr.hpp>

class CStrokeOverlay : public IRasterOverlay {
public:
    /// The stroke shows inside the canvas's selection as it is at the time, until Complete; without a canvas
    /// everywhere.
    CStrokeOverlay(const boost::shared_ptr<CRasterStroke>& spStroke,
                   const boost::shared_ptr<ILayerCanvas>& spCanvas)
        : m_spStroke(spStroke), m_wpCanvas(spCanvas) {}
    /// Keeps the selection of now and gives the stroke its number among all of the canvas.
    void Complete();

    CRasterStroke& GetStroke() const { return *m_spStroke; }
    uint64_t GetNumber() const { return m_uNumber; }

    bool CoversBlock(CPoint pt) const override;
    void PaintInto(CRasterBlockBuffer& work) const override;
    /// Paints the complete stroke into the layer's plane. False when the block stays as it is.
    bool MergeInto(CRasterBuffer& raster, CPoint pt) const;
    void PassFlags(CBoolMatrix& matrix) override;
    void ClearFlag(CPoint pt) override;

private:
    /// Null where there is no selection.
    boost::shared_ptr<CSelectBuffer> GetSelect() const;

    boost::shared_ptr<CRasterStroke> m_spStroke;
    boost::weak_ptr<ILayerCanvas> m_wpCanvas;    ///< until the stroke is complete
    boost::shared_ptr<CSelectBuffer> m_spSelect; ///< from then on
    uint64_t m_uNumber = 0;
};
