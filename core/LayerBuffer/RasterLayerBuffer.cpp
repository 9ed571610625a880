#include "core/LayerBuffer/RasterLayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"

#include <boost/make_shared.hpp>

void CRasterLayerBuffer::Create(const TCanvasPtr& spCanvas) {
    CLayerBuffer::Create(spCanvas);
    m_pMask = boost::make_shared<CAlphaBufferImpl<uint8_t>>();
    m_pMask->Create(m_size, DEFAULT_BLOCKSIZE);
    SetRaster(CreatePlane(spCanvas->IsColorRaster(), m_size, DEFAULT_BLOCKSIZE));
}

void CRasterLayerBuffer::SetRaster(const boost::shared_ptr<CRasterBuffer>& pRaster) {
    SELF_CHECK(illegal_data, pRaster != nullptr);
    const auto& pMask = m_pMask;
    SELF_CHECK(illegal_data, pRaster->GetBufferSize() == pMask->GetBufferSize());
    m_pRaster = ConvertPlane(pRaster, GetCanvas()->IsColorRaster());
    m_pRaster->GetDirty().Fill(true);
}

void CRasterLayerBuffer::RenderOwn(CRasterBlockBuffer& dest) {
    const CPoint pt = dest.GetPosition();
    const auto spMask = m_pMask->GetBlock(pt, false);
    m_pRaster->BlendBlockInto(dest, spMask.get());
    const CSize szBlock = m_pRaster->GetBlockSize();
    m_pRaster->GetDirty().At(pt.x / szBlock.cx, pt.y / szBlock.cy) = 0;
    m_pMask->GetDirty().At(pt.x / szBlock.cx, pt.y / szBlock.cy) = 0;
}

boost::shared_ptr<CBoolMatrix> CRasterLayerBuffer::GetChangeMatrix() const {
    auto spMatrix = boost::make_shared<CBoolMatrix>(m_pRaster->GetBufferSize());
    spMatrix->Or(m_pRaster->GetDirty());
    spMatrix->Or(m_pMask->GetDirty());
    return spMatrix;
}

bool CRasterLayerBuffer::canBeMergedWith(const CLayerBuffer& other) const {
    return CLayerBuffer::canBeMergedWith(other) && dynamic_cast<const CRasterLayerBuffer*>(&other);
}

CSerializer CRasterLayerBuffer::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteChunk(SerializeBase());
    writer.WriteChunk(m_pRaster->Serialize());
    return writer;
}

void CRasterLayerBuffer::Deserialize(CDeserializer& reader, const TCanvasPtr& spCanvas) {
    reader.ExpectTag(CHUNK_TAG);
    Create(spCanvas);
    CDeserializer base;
    reader.ReadChunk(base);
    DeserializeBase(base);
    CDeserializer plane;
    reader.ReadChunk(plane);
    reader.ExpectEnd();
    // The file may hold the pixels in the other mode than its canvas's.
    boost::shared_ptr<CRasterBuffer> spPlane;
    if (plane.GetTag() == CColorRasterBuffer::CHUNK_TAG)
        spPlane = boost::make_shared<CColorRasterBuffer>();
    else if (plane.GetTag() == CMonoRasterBuffer::CHUNK_TAG)
        spPlane = boost::make_shared<CMonoRasterBuffer>();
    else
        throw deserialize_error();
    spPlane->Deserialize(plane);
    if (!(spPlane->GetSize() == m_size) || !spPlane->IsCompatible(*m_pRaster)) throw deserialize_error();
    SetRaster(spPlane);
}

boost::shared_ptr<CRasterLayerBuffer> CreateRasterLayer(const TCanvasPtr& spCanvas) {
    auto spLayer = boost::make_shared<CRasterLayerBuffer>();
    spLayer->Create(spCanvas);
    return spLayer;
}
