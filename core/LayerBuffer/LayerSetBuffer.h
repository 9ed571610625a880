// A folder: its children are composited onto the layers below it, so its opacity is only stored and shown.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"

class CLayerSetBuffer : public CLayerBuffer {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("LAYS");

    void Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) override;
    void DrawBlock(CRasterBlockBuffer& dest) override;
    void PaintOnto(CRasterBlockBuffer& dest) override;
    void RefreshBlock(CPoint pt) override;
    bool ShowsAt(CPoint pt) const override;
    void AddPictureTo(CBoolMatrix& matrix) const override;
    CSerializer Serialize() const override;
    bool canBeMergedWith(const CLayerBuffer&) const override { return false; }

protected:
    boost::shared_ptr<CLayerBuffer> CreateLike(const TCanvasPtr& spCanvas) const override;
    /// Its draw buffer is never used.
    bool IsPictureCached(bool) const override { return false; }
    bool IsClipping() const override { return false; }
    bool PassesFlags() const override { return m_bVisible; }
};

/// A new empty layer set, in no tree yet.
boost::shared_ptr<CLayerSetBuffer> CreateLayerSet(const TCanvasPtr& spCanvas);
