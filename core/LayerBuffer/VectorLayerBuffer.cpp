#include "core/LayerBuffer/VectorLayerBuffer.h"

#include "core/LayerBuffer/LayerHistory.h"
#include "core/PathObject/PathObjectFactory.h"

#include <boost/make_shared.hpp>

#include <algorithm>

void CVectorLayerBuffer::Create(const TCanvasPtr& spCanvas) {
    CLayerBuffer::Create(spCanvas);
    m_pCoverage = boost::make_shared<CAlphaBufferImpl<uint8_t>>();
    m_pCoverage->Create(m_size, DEFAULT_BLOCKSIZE);
    m_pCoverage->GetDirty().Fill(true);
}

bool CVectorLayerBuffer::PrepareOwn(CPoint pt) {
    uint8_t& uDirty = m_pCoverage->DirtyAt(pt);
    if (uDirty) {
        // A tile of its own takes the paths, so that one that fails leaves the old coverage and the flag.
        const auto spTile = boost::static_pointer_cast<CAlphaBlock8>(m_pCoverage->CreateBlock(pt));
        bool bAny = false;
        for (const auto& spPath : m_lstPaths) {
            if (spPath->RectIncludingPath().Intersect(spTile->GetRect()).IsEmpty()) continue;
            spPath->RasterizePath(*spTile);
            bAny = true;
        }
        m_pCoverage->SetBlock(pt, bAny ? spTile : boost::shared_ptr<CAlphaBlock8>());
        uDirty = 0;
    }
    return m_pCoverage->GetBlock(pt, false) != nullptr;
}

void CVectorLayerBuffer::RenderOwn(CRasterBlockBuffer& dest) const {
    if (m_bVisible) RenderContent(dest);
}

void CVectorLayerBuffer::RenderContent(CRasterBlockBuffer& dest) const {
    m_pCoverage->BlendBlockInto(dest, nullptr);
}

boost::shared_ptr<CBoolMatrix> CVectorLayerBuffer::GetChangeMatrix() const {
    return m_pCoverage->GetDirtyMatrix();
}

void CVectorLayerBuffer::AppendPath(const boost::shared_ptr<CPathObject>& spPath) {
    m_lstPaths.push_back(spPath);
    InvalidateRect(spPath->RectIncludingPath());
}

void CVectorLayerBuffer::InvalidateRect(const CRect& rc) {
    m_pCoverage->ForEachBlockIn(rc, [&](CPoint pt) { m_pCoverage->DirtyAt(pt) = 1; });
}

void CVectorLayerBuffer::SetLayerColor(TColor color, bool bHistory) {
    if (bHistory && color != GetLayerColor())
        GetCanvas()->GetHistory().Register(boost::make_shared<SetLayerColorHistory>(
            L"レイヤーカラー変更", boost::static_pointer_cast<CVectorLayerBuffer>(shared_from_this()),
            GetLayerColor(), color));
    m_pCoverage->SetColor(color);
    MarkAllDirty();
}

CSerializer CVectorLayerBuffer::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteInt32(static_cast<int32_t>(m_lstPaths.size()));
    writer.WriteInt32(static_cast<int32_t>(GetLayerColor()));
    writer.WriteChunk(SerializeBase());
    for (const auto& spPath : m_lstPaths) writer.WriteChunk(spPath->Serialize());
    return writer;
}

void CVectorLayerBuffer::Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) {
    reader.ExpectTag(CHUNK_TAG);
    Create(spCanvas);
    const uint32_t uCount = static_cast<uint32_t>(reader.ReadInt32());
    SetLayerColor(static_cast<TColor>(reader.ReadInt32()) & 0xFFFFFF);
    CDeserializer base;
    reader.ReadChunk(base);
    DeserializeBase(base);
    m_lstPaths.clear();
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        reader.ReadChunk(chunk);
        const auto spPath = CreatePathObjectByTag(chunk.GetTag());
        spPath->Deserialize(chunk);
        AppendPath(spPath);
    }
    reader.ExpectEnd();
}

boost::shared_ptr<CVectorLayerBuffer> CreateVectorLayer(const TCanvasPtr& spCanvas) {
    auto spLayer = boost::make_shared<CVectorLayerBuffer>();
    spLayer->Create(spCanvas);
    return spLayer;
}
