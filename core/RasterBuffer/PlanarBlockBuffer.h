// Common base of colour and grey tiles: `PLANES` byte planes of which the last is alpha.
#pragma once

#include "core/RasterBuffer/RasterBlockBuffer.h"

#include <boost/enable_shared_from_this.hpp>

#include <cstring>

/// A straight-alpha tile. All operations work plane by plane, independent of the channels' meaning. `Tile`
/// is the final class.
template <class Tile, size_t PLANES>
class CPlanarBlockBuffer : public CRasterBlockBuffer,
                           public IWirePart,
                           public boost::enable_shared_from_this<CPlanarBlockBuffer<Tile, PLANES>> {
public:
    void Deserialize(CDeserializer& reader) override;
    void ReadHead(CDeserializer& reader) override;
    void Create(CSize szBlock, CPoint ptPos) override;
    boost::shared_ptr<CRasterBlockBuffer> Clone() const override;
    boost::shared_ptr<CRasterBlockBuffer> CreateBlank(CSize sz) const override;
    boost::shared_ptr<CRasterBlockBuffer> CreateReduced(CSize sz, int iScale, CSize szInside) const override;
    void BlendInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const override;
    void ReadBitmap(CBitmapSession& session) override;
    void WriteBitmap(CBitmapSession& session) const override;
    void Clear() override { std::memset(m_pFirst, 0, GetPlaneBytes() * PLANES); }
    void LayOnWhite() override;
    CSerializer Serialize() const override;
    /// The pixels in the file format, one after the other, channels interleaved.
    size_t GetWireSize() const override { return GetPlaneBytes() * PLANES; }
    void WriteWire(uint8_t* pTo) const override;
    void ExtractTo(CRasterBlockBuffer& dest, CPoint ptDest, bool bCut,
                   const CRasterBlockBuffer* pMask) override;
    uint8_t GetPixelAlpha(CPoint pt) const override { return GetAlpha()[Offset(pt)]; }
    void PasteFrom(const CRasterBlockBuffer& src, CPoint ptSrc) override;

    /// A channel's byte plane, 0 to PLANES - 1.
    uint8_t* GetPlane(size_t nPlane) { return m_pFirst + nPlane * GetPlaneBytes(); }
    const uint8_t* GetPlane(size_t nPlane) const { return m_pFirst + nPlane * GetPlaneBytes(); }
    uint8_t* GetAlpha() { return GetPlane(PLANES - 1); }
    const uint8_t* GetAlpha() const { return GetPlane(PLANES - 1); }
};
