#include "core/LayerBuffer/LayerSetBuffer.h"

#include <boost/make_shared.hpp>

#include <algorithm>

void CLayerSetBuffer::DrawBlock(CRasterBlockBuffer& dest) {
    if (!m_bVisible) return;
    for (const TLayerPtr& spChild : m_lstChildren) spChild->DrawBlock(dest);
    m_pDrawBuffer->ClearDirty(dest.GetPosition());
}

void CLayerSetBuffer::PaintOnto(CRasterBlockBuffer& dest) {
    if (!m_bVisible) return;
    for (const TLayerPtr& spChild : m_lstChildren) spChild->PaintOnto(dest);
}

void CLayerSetBuffer::RefreshBlock(CPoint pt) {
    if (!m_bVisible) return;
    for (const TLayerPtr& spChild : m_lstChildren) spChild->RefreshBlock(pt);
    m_pDrawBuffer->ClearDirty(pt);
}

bool CLayerSetBuffer::ShowsAt(CPoint pt) const {
    return m_bVisible && std::any_of(m_lstChildren.begin(), m_lstChildren.end(),
                                     [&](const TLayerPtr& spChild) { return spChild->ShowsAt(pt); });
}

void CLayerSetBuffer::AddPictureTo(CBoolMatrix& matrix) const {
    for (const TLayerPtr& spChild : m_lstChildren) spChild->AddPictureTo(matrix);
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

TLayerPtr CLayerSetBuffer::CreateLike(const TCanvasPtr& spCanvas) const { return CreateLayerSet(spCanvas); }

boost::shared_ptr<CLayerSetBuffer> CreateLayerSet(const TCanvasPtr& spCanvas) {
    auto spLayer = boost::make_shared<CLayerSetBuffer>();
    spLayer->Create(spCanvas);
    return spLayer;
}
