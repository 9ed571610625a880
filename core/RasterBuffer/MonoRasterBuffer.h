// Grey tiles and planes: grey, A.
#pragma once

#include "core/RasterBuffer/PlanarBlockBuffer.h"
#include "core/RasterBuffer/RasterBufferImpl.h"
#include "core/RasterKernel/Pixels.h"

class CMonoRasterBlockBuffer : public CPlanarBlockBuffer<CMonoRasterBlockBuffer, 2> {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("RABM");

    void DrawToScreen(CGDIBuffer& target, const CScreenMap& map) const override;
    void BlendWith(CRasterBlockBuffer& dest, uint8_t uOpacity,
                   const CRasterBlockBuffer* pMask) const override;
    TColor GetPixelColor(CPoint pt) const override;
    /// Does nothing: a grey tile has no colour.
    void Fill(TColor color, uint8_t uAlpha) override;
    void SetOwner(CRasterBuffer* pOwner) override;

    /// The tile's pixels from index `nOffset` on.
    TGreyPixels Pixels(size_t nOffset = 0);
    TConstGreyPixels Pixels(size_t nOffset = 0) const;
    /// Reads one pixel from B, G, R, A bytes (reduced by GreyOf) and writes it to them.
    void LoadPixel(size_t i, const uint8_t* pBgra);
    void StorePixel(size_t i, uint8_t* pBgra) const;
    /// Composites `nCount` pixels of a tile over this one by the fast kernel.
    void BlendRow(size_t nOffset, const CMonoRasterBlockBuffer& src, size_t nSource, size_t nCount);
};

class CMonoRasterBuffer : public CStraightAlphaBuffer<CMonoRasterBuffer, CMonoRasterBlockBuffer> {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("RASM");
};
