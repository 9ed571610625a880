#include "core/RasterBuffer/MonoRasterBuffer.h"

#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/PlanarBlockBufferImpl.h"
#include "core/RasterBuffer/ScreenDraw.h"
#include "core/RasterKernel/BlendKernel.h"
#include "core/RasterKernel/ResolveKernel.h"

template class CPlanarBlockBuffer<CMonoRasterBlockBuffer, 2>;

TGreyPixels CMonoRasterBlockBuffer::Pixels(size_t nOffset) {
    return {GetPlane(0) + nOffset, GetPlane(1) + nOffset};
}

TConstGreyPixels CMonoRasterBlockBuffer::Pixels(size_t nOffset) const {
    return {GetPlane(0) + nOffset, GetPlane(1) + nOffset};
}

void CMonoRasterBlockBuffer::DrawToScreen(CGDIBuffer& target, const CScreenMap& map) const {
    DrawSamples(target, map, GetRect(),
                [&](size_t i, size_t nCount, uint8_t* pScreen) { ResolveRow(pScreen, Pixels(i), nCount); });
}

void CMonoRasterBlockBuffer::BlendWith(CRasterBlockBuffer& dest, uint8_t uOpacity,
                                       const CRasterBlockBuffer* pMask) const {
    SELF_CHECK(invalid_argument, dest.GetSize() == m_szBlock);
    const uint8_t* pMaskBytes = MaskBytes(pMask, m_szBlock);
    if (auto* pGrey = dynamic_cast<CMonoRasterBlockBuffer*>(&dest)) {
        if (uOpacity == 255 && !pMaskBytes)
            BlendFast(pGrey->Pixels(), Pixels(), GetPlaneBytes());
        else
            BlendGeneral(pGrey->Pixels(), Pixels(), uOpacity, pMaskBytes, GetPlaneBytes());
    } else {
        auto* pColor = dynamic_cast<CColorRasterBlockBuffer*>(&dest);
        SELF_CHECK(invalid_argument, pColor != nullptr);
        BlendGeneral(pColor->Pixels(), Pixels(), uOpacity, pMaskBytes, GetPlaneBytes());
    }
}

TColor CMonoRasterBlockBuffer::GetPixelColor(CPoint pt) const { return GetPlane(0)[Offset(pt)] * 0x010101u; }

void CMonoRasterBlockBuffer::Fill(TColor, uint8_t) {}

void CMonoRasterBlockBuffer::SetOwner(CRasterBuffer* pOwner) {
    m_pOwner = dynamic_cast<CMonoRasterBuffer*>(pOwner);
}

void CMonoRasterBlockBuffer::LoadPixel(size_t i, const uint8_t* pBgra) {
    GetPlane(0)[i] = GreyOf(pBgra[2], pBgra[1], pBgra[0]);
    GetPlane(1)[i] = pBgra[3];
}

void CMonoRasterBlockBuffer::StorePixel(size_t i, uint8_t* pBgra) const {
    pBgra[0] = pBgra[1] = pBgra[2] = GetPlane(0)[i];
    pBgra[3] = GetPlane(1)[i];
}

void CMonoRasterBlockBuffer::BlendRow(size_t nOffset, const CMonoRasterBlockBuffer& src, size_t nSource,
                                      size_t nCount) {
    BlendFast(Pixels(nOffset), src.Pixels(nSource), nCount);
}
