// What colour and grey tiles have in common: `PLANES` byte planes of which the last is alpha.
#pragma once

#include "core/RasterBuffer/RasterBlockBuffer.h"

#include <cstring>

/// A straight-alpha tile. Everything here works plane by plane and does not know what the channels mean.
/// `Tile` is the final class.
template <class Tile, size_t PLANES>
class CPlanarBlockBuffer : public CRasterBlockBuffer {
public:
    void Deserialize(CDeserializer& reader) override;
    void Create(CSize szBlock, CPoint ptPos) override;
    boost::shared_ptr<CRasterBlockBuffer> Clone() const override;
    boost::shared_ptr<CRasterBlockBuffer> CreateBlank(CSize sz) const override;
    boost::shared_ptr<CRasterBlockBuffer> CreateReduced(CSize sz, int iScale) const override;
    void BlendInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const override;
    void ReadBitmap(CBitmapSession& session) override;
    void WriteBitmap(CBitmapSession& session) const override;
    void Clear() override { std::memset(m_pFirst, 0, GetPlaneBytes() * PLANES); }
    CSerializer Serialize() const override;
    void ExtractTo(CRasterBlockBuffer& dest, CPoint ptDest, bool bCut,
                   const CRasterBlockBuffer* pMask) override;
    void RestoreAlpha(const CRasterBlockBuffer& src) override;
    void PasteFrom(const CRasterBlockBuffer& src, CPoint ptSrc) override;

    /// A channel's byte plane, 0 to PLANES - 1.
    uint8_t* GetPlane(size_t nPlane) { return m_pFirst + nPlane * GetPlaneBytes(); }
    const uint8_t* GetPlane(size_t nPlane) const { return m_pFirst + nPlane * GetPlaneBytes(); }
    uint8_t* GetAlpha() { return GetPlane(PLANES - 1); }
    const uint8_t* GetAlpha() const { return GetPlane(PLANES - 1); }
};
