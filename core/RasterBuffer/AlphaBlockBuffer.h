// Coverage tiles: one value a pixel, the ink's colour kept once in the plane.
#pragma once

#include "core/RasterBuffer/RasterBlockBuffer.h"

#include <cstring>

class CAlphaBufferBase;

/// `T` is uint8_t or uint16_t; a 16-bit value is combined with 8-bit pixels by its upper byte. Coverage is
/// neither stored nor exchanged with bitmaps: those operations do nothing.
template <class T>
class CAlphaBlockBufferImpl : public CRasterBlockBuffer {
public:
    void Deserialize(CDeserializer&) override {}
    void ReadHead(CDeserializer&) override {}
    void Create(CSize szBlock, CPoint ptPos) override;
    boost::shared_ptr<CRasterBlockBuffer> Clone() const override;
    /// Returns an empty pointer.
    boost::shared_ptr<CRasterBlockBuffer> CreateBlank(CSize) const override { return {}; }
    boost::shared_ptr<CRasterBlockBuffer> CreateReduced(CSize sz, int iScale, CSize szInside) const override;
    void DrawToScreen(CGDIBuffer&, const CScreenMap&) const override {}
    /// BlendCoverage with the owner's ink; a tile without an owner is a defect.
    void BlendInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const override;
    void BlendWith(CRasterBlockBuffer& dest, uint8_t, const CRasterBlockBuffer* pMask) const override {
        BlendInto(dest, pMask);
    }
    /// Paints a plane's ink on pixels, or removes their coverage when the plane erases. On an alpha tile of
    /// 8 bits an 8-bit tile adds coverage either way; a 16-bit one does nothing there.
    void BlendCoverage(CRasterBlockBuffer& dest, const CAlphaBufferBase& ink,
                       const CRasterBlockBuffer* pMask) const;
    void ReadBitmap(CBitmapSession&) override {}
    void WriteBitmap(CBitmapSession&) const override {}
    void Clear() override;
    TColor GetPixelColor(CPoint) const override { return 0; }
    uint8_t GetPixelAlpha(CPoint pt) const override {
        return static_cast<uint8_t>(GetAlpha()[Offset(pt)] >> (8 * (sizeof(T) - 1)));
    }
    void Fill(TColor, uint8_t) override {}
    /// An empty chunk.
    CSerializer Serialize() const override { return {}; }
    void SetOwner(CRasterBuffer* pOwner) override;
    /// Copies the overlap; ignores the mask.
    void ExtractTo(CRasterBlockBuffer& dest, CPoint ptDest, bool bCut,
                   const CRasterBlockBuffer* pMask) override;
    /// Copies the overlap without blending.
    void PasteFrom(const CRasterBlockBuffer& src, CPoint ptSrc) override;

    /// The tile's values, row by row.
    T* GetAlpha() { return reinterpret_cast<T*>(m_pFirst); }
    const T* GetAlpha() const { return reinterpret_cast<const T*>(m_pFirst); }
    /// True when every value is `value`.
    bool IsAll(T value) const {
        const T* p = GetAlpha();
        return *p == value && std::memcmp(p, p + 1, GetPlaneBytes() - sizeof(T)) == 0;
    }

private:
    static const CAlphaBlockBufferImpl& Cast(const CRasterBlockBuffer& tile);
    /// Copies the rows of `from` under `rc` (its coordinates) to the same rows, moved, of `to`.
    static void CopyRows(CAlphaBlockBufferImpl& to, CPoint ptTo, const CAlphaBlockBufferImpl& from,
                         CPoint ptFrom, CSize sz);
};

using CAlphaBlock8 = CAlphaBlockBufferImpl<uint8_t>;
using CAlphaBlock16 = CAlphaBlockBufferImpl<uint16_t>;
