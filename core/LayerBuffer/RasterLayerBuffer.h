// A layer of pixels.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"
#include "core/RasterBuffer/AlphaBuffer.h"

class CRasterLayerBuffer : public CLayerBuffer {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("LAYR");

    void Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) override;
    void Create(const TCanvasPtr& spCanvas) override;
    void RenderOwn(CRasterBlockBuffer& dest) override;
    boost::shared_ptr<CBoolMatrix> GetChangeMatrix() const override;
    CSerializer Serialize() const override;
    bool canBeMergedWith(const CLayerBuffer& other) const override;
    bool IsRasterizable() const override { return !m_lstChildren.empty(); }

    /// The layer's pixels, colour or grey by the canvas's mode; opacity is always 255 here.
    const boost::shared_ptr<CRasterBuffer>& GetRaster() const { return m_pRaster; }
    /// Takes a plane of the same geometry as its pixels, converted to the canvas's mode.
    void SetRaster(const boost::shared_ptr<CRasterBuffer>& pRaster);
    /// Restricts the layer's picture where it has tiles; not stored in files.
    CAlphaBufferImpl<uint8_t>& GetMask() const { return *m_pMask; }

private:
    boost::shared_ptr<CRasterBuffer> m_pRaster;
    boost::shared_ptr<CAlphaBufferImpl<uint8_t>> m_pMask;
};

/// A new raster layer of the canvas's size, in no tree yet.
boost::shared_ptr<CRasterLayerBuffer> CreateRasterLayer(const TCanvasPtr& spCanvas);
