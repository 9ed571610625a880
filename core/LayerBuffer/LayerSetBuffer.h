// A folder: its children are composited onto the layers below it, so its opacity is only stored and shown.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"

class CLayerSetBuffer : public CLayerBuffer {
public:
    static constexpr uint32_t CHUNK_TAG = MakeTag("LAYS");

    void Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) override;
    CSerializer Serialize() const override;
    bool IsClipping() const override { return false; }
    bool IsPassThrough() const override { return true; }
    bool canBeMergedWith(const CLayerBuffer&) const override { return false; }

protected:
    boost::shared_ptr<CLayerBuffer> CreateLike(const TCanvasPtr& spCanvas) const override;
};

/// A new empty layer set, in no tree yet.
boost::shared_ptr<CLayerSetBuffer> CreateLayerSet(const TCanvasPtr& spCanvas);
