#include "core/LayerBuffer/LayerSetBuffer.h"

#include <boost/make_shared.hpp>

void CLayerSetBuffer::DrawBlock(CRasterBlockBuffer& dest) {
    if (!m_bVisible) return;
    for (const TLayerPtr& spChild : m_lstChildren) spChild->DrawBlock(dest);
    const CPoint pt = dest.GetPosition();
    const CSize szBlock = m_pDrawBuffer->GetBlockSize();
    m_pDrawBuffer->GetDirty().At(pt.x / szBlock.cx, pt.y / szBlock.cy) = 0;
}

CSerializer CLayerSetBuffer::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteChunk(SerializeBase());
    return writer;
}

void CLayerSetBuffer::Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) {
    reader.ExpectTag(CHUNK_TAG);
    Create(spCanvas);
    CDeserializer base;
    reader.ReadChunk(base);
    DeserializeBase(base);
    reader.ExpectEnd();
}

boost::shared_ptr<CLayerSetBuffer> CreateLayerSet(const TCanvasPtr& spCanvas) {
    auto spLayer = boost::make_shared<CLayerSetBuffer>();
    spLayer->Create(spCanvas);
    return spLayer;
}
