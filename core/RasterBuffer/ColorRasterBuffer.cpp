#include "core/RasterBuffer/ColorRasterBuffer.h"

#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "core/RasterBuffer/PlanarBlockBufferImpl.h"
#include "core/RasterBuffer/ScreenDraw.h"
#include "core/RasterKernel/BlendKernel.h"
#include "core/RasterKernel/ResolveKernel.h"

template class CPlanarBlockBuffer<CColorRasterBlockBuffer, 4>;

TColorPixels CColorRasterBlockBuffer::Pixels(size_t nOffset) {
    return {GetPlane(0) + nOffset, GetPlane(1) + nOffset, GetPlane(2) + nOffset, GetPlane(3) + nOffset};
}

TConstColorPixels CColorRasterBlockBuffer::Pixels(size_t nOffset) const {
    return {GetPlane(0) + nOffset, GetPlane(1) + nOffset, GetPlane(2) + nOffset, GetPlane(3) + nOffset};
}

void CColorRasterBlockBuffer::DrawToScreen(CGDIBuffer& target, const CScreenMap& map) const {
    DrawSamples(target, map, GetRect(),
                [&](size_t i, size_t nCount, uint8_t* pScreen) { ResolveRow(pScreen, Pixels(i), nCount); });
}

void CColorRasterBlockBuffer::BlendWith(CRasterBlockBuffer& dest, uint8_t uOpacity,
                                        const CRasterBlockBuffer* pMask) const {
    SELF_CHECK(invalid_argument, dest.GetSize() == m_szBlock);
    const uint8_t* pMaskBytes = MaskBytes(pMask, m_szBlock);
    if (auto* pGrey = dynamic_cast<CMonoRasterBlockBuffer*>(&dest)) {
        BlendGeneral(pGrey->Pixels(), Pixels(), uOpacity, pMaskBytes, GetPlaneBytes());
    } else {
        auto* pColor = dynamic_cast<CColorRasterBlockBuffer*>(&dest);
        SELF_CHECK(invalid_argument, pColor != nullptr);
        if (uOpacity == 255 && !pMaskBytes)
            BlendFast(pColor->Pixels(), Pixels(), GetPlaneBytes());
        else
            BlendGeneral(pColor->Pixels(), Pixels(), uOpacity, pMaskBytes, GetPlaneBytes());
    }
}

TColor CColorRasterBlockBuffer::GetPixelColor(CPoint pt) const {
    const TConstColorPixels px = Pixels(Offset(pt));
    return MakeColor(*px.pR, *px.pG, *px.pB);
}

void CColorRasterBlockBuffer::Fill(TColor color, uint8_t uAlpha) {
    const uint8_t aBytes[4] = {RedOf(color), GreenOf(color), BlueOf(color), uAlpha};
    for (size_t n = 0; n < 4; ++n) std::memset(GetPlane(n), aBytes[n], GetPlaneBytes());
}

void CColorRasterBlockBuffer::SetOwner(CRasterBuffer* pOwner) {
    m_pOwner = dynamic_cast<CColorRasterBuffer*>(pOwner);
}

void CColorRasterBlockBuffer::LoadPixel(size_t i, const uint8_t* pBgra) {
    const TColorPixels px = Pixels(i);
    *px.pB = pBgra[0];
    *px.pG = pBgra[1];
    *px.pR = pBgra[2];
    *px.pA = pBgra[3];
}

void CColorRasterBlockBuffer::StorePixel(size_t i, uint8_t* pBgra) const {
    const TConstColorPixels px = Pixels(i);
    pBgra[0] = *px.pB;
    pBgra[1] = *px.pG;
    pBgra[2] = *px.pR;
    pBgra[3] = *px.pA;
}

void CColorRasterBlockBuffer::BlendRow(size_t nOffset, const CColorRasterBlockBuffer& src, size_t nSource,
                                       size_t nCount) {
    BlendFast(Pixels(nOffset), src.Pixels(nSource), nCount);
}
