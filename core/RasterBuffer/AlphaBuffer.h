// Coverage planes: strokes in progress, rasterized paths, selections.
#pragma once

#include "core/RasterBuffer/AlphaBlockBuffer.h"
#include "core/RasterBuffer/RasterBufferImpl.h"

/// Properties of every coverage plane besides its coverage.
class CAlphaBufferBase : public CRasterBuffer {
public:
    /// True when the plane removes coverage from its destination instead of painting.
    bool IsErase() const { return m_bErase; }
    void SetErase(bool bErase) { m_bErase = bErase; }
    /// The ink, and its grey level for grey destinations.
    TColor GetColor() const { return m_color; }
    uint8_t GetGrey() const { return m_uGrey; }
    void SetColor(TColor color) {
        m_color = color;
        m_uGrey = GreyOf(RedOf(color), GreenOf(color), BlueOf(color));
    }
    /// Plane pixels per destination pixel, in each direction.
    virtual int GetResolutionScale() const = 0;

private:
    bool m_bErase = false;
    TColor m_color = 0xFFFFFF;
    uint8_t m_uGrey = 255;
};

/// A coverage plane of `T` (uint8_t or uint16_t). Copies keep the ink, but not the erase flag.
template <class T>
class CAlphaBufferImpl : public CRasterBufferImpl<CAlphaBlockBufferImpl<T>, CAlphaBufferBase> {
    using TBase = CRasterBufferImpl<CAlphaBlockBufferImpl<T>, CAlphaBufferBase>;

public:
    boost::shared_ptr<CRasterBuffer> CreateSized(CSize szBuffer, CSize szBlock) const override {
        auto spPlane = boost::make_shared<CAlphaBufferImpl>();
        spPlane->Create(szBuffer, szBlock);
        return spPlane;
    }
    /// Uses this plane's ink, whatever plane owns the tile.
    void BlendBlockInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const override {
        if (const auto* pBlock = this->FindBlock(dest.GetPosition()))
            pBlock->BlendCoverage(dest, *this, pMask);
    }
    void Deserialize(CDeserializer&) override {}
    /// An empty chunk.
    CSerializer Serialize() const override { return {}; }
    boost::shared_ptr<CRasterBuffer> ShallowCopy() override { return WithInk(TBase::ShallowCopy()); }
    boost::shared_ptr<CRasterBuffer> DeepCopy() const override { return WithInk(TBase::DeepCopy()); }
    /// A coverage plane has no opacity: both are defects.
    void SetOpacity(uint8_t) override { ThrowViolation<defect_logic>("not implemented"); }
    uint8_t GetOpacity() const override { ThrowViolation<defect_logic>("not implemented"); }
    int GetResolutionScale() const override { return 1; }

protected:
    uint32_t GetChunkTag() const override { return TAG_EMPTY; }

private:
    boost::shared_ptr<CRasterBuffer> WithInk(const boost::shared_ptr<CRasterBuffer>& spCopy) const {
        static_cast<CAlphaBufferBase&>(*spCopy).SetColor(this->GetColor());
        return spCopy;
    }
};

/// A 16-bit coverage plane at twice the resolution: twice the requested plane and block size in both
/// directions.
class CDoubleAlphaBuffer : public CAlphaBufferImpl<uint16_t> {
public:
    void Create(CSize szBuffer, CSize szBlock) override;
    boost::shared_ptr<CRasterBuffer> CreateSized(CSize szBuffer, CSize szBlock) const override;
    boost::shared_ptr<CRasterBuffer> CreateLike() const override;
    /// Reduces the four tiles around to one of `dest`'s size by a 3 by 3 binomial window, which includes
    /// one column and one row of the neighbours on the right and below; pixels of missing tiles and outside
    /// the plane read as 0.
    void BlendBlockInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const override;
    int GetResolutionScale() const override { return 2; }
};
