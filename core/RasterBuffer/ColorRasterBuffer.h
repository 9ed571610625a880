// Full-colour tiles and planes: R, G, B, A.
#pragma once

#include "core/RasterBuffer/PlanarBlockBuffer.h"
#include "core/RasterBuffer/RasterBufferImpl.h"
#include "core/RasterKernel/Pixels.h"

class CColorRasterBlockBuffer : public CPlanarBlockBuffer<CColorRasterBlockBuffer, 4> {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("RABC");

    void DrawToScreen(CGDIBuffer& target, const CScreenMap& map) const override;
    void BlendWith(CRasterBlockBuffer& dest, uint8_t uOpacity,
                   const CRasterBlockBuffer* pMask) const override;
    TColor GetPixelColor(CPoint pt) const override;
    void Fill(TColor color, uint8_t uAlpha) override;
    void SetOwner(CRasterBuffer* pOwner) override;

    /// The tile's pixels from index `nOffset` on.
    TColorPixels Pixels(size_t nOffset = 0);
    TConstColorPixels Pixels(size_t nOffset = 0) const;
    /// Reads and writes one pixel as B, G, R, A bytes.
    void LoadPixel(size_t i, const uint8_t* pBgra);
    void StorePixel(size_t i, uint8_t* pBgra) const;
    /// Composites `nCount` pixels of a tile over this one by the fast kernel.
    void BlendRow(size_t nOffset, const CColorRasterBlockBuffer& src, size_t nSource, size_t nCount);
};

class CColorRasterBuffer : public CStraightAlphaBuffer<CColorRasterBuffer, CColorRasterBlockBuffer> {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("RASC");
};
