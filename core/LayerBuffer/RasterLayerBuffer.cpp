#include "core/LayerBuffer/RasterLayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "core/RasterBuffer/SelectBuffer.h"

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

bool CRasterLayerBuffer::PrepareOwn(CPoint pt) {
    m_pRaster->DirtyAt(pt) = 0;
    m_pMask->DirtyAt(pt) = 0;
    if (!m_pStroke) return m_pRaster->GetBlock(pt, false) != nullptr;
    const CPoint ptStroke{pt.x * m_pStroke->GetResolutionScale(), pt.y * m_pStroke->GetResolutionScale()};
    m_pStroke->DirtyAt(ptStroke) = 0;
    return true;
}

void CRasterLayerBuffer::RenderOwn(CRasterBlockBuffer& dest) const {
    const CPoint pt = dest.GetPosition();
    const auto spMask = m_pMask->GetBlock(pt, false);
    if (!m_pStroke) {
        m_pRaster->BlendBlockInto(dest, spMask.get());
        return;
    }
    const auto spWork = m_pRaster->CreateBlock(pt);
    m_pRaster->BlendBlockInto(*spWork, nullptr);
    // Paint in progress stays inside the selection: where that has no tile nothing is painted.
    const CSelectBuffer* pSelect = GetCanvas()->GetSelect();
    const CRasterBlockBuffer* pSelected = pSelect ? pSelect->GetMaskTile(pt) : nullptr;
    if (!pSelect || pSelected) m_pStroke->BlendBlockInto(*spWork, pSelected);
    spWork->BlendInto(dest, spMask.get());
}

boost::shared_ptr<CRasterBlockBuffer> CRasterLayerBuffer::GetOwnTile(CPoint pt) const {
    const bool bPlain = IsPictureCached() && !m_pStroke && !m_pMask->GetBlock(pt, false);
    return bPlain ? m_pRaster->GetBlock(pt, false) : boost::shared_ptr<CRasterBlockBuffer>();
}

boost::shared_ptr<CBoolMatrix> CRasterLayerBuffer::GetChangeMatrix() const {
    auto spMatrix = boost::make_shared<CBoolMatrix>(m_pRaster->GetBufferSize());
    spMatrix->Or(m_pRaster->GetDirty());
    spMatrix->Or(m_pMask->GetDirty());
    if (!m_pStroke) return spMatrix;
    const CBoolMatrix& stroke = m_pStroke->GetDirty();
    spMatrix->Or(stroke);
    if (m_pStroke->GetResolutionScale() == 1) return spMatrix;
    // A finer plane is reduced by a window that reaches into the blocks on the right and below.
    for (int32_t y = 0; y < stroke.GetSize().cy; ++y)
        for (int32_t x = 0; x < stroke.GetSize().cx; ++x)
            if (stroke.At(x, y))
                for (int32_t n = 1; n < 4; ++n)
                    if (x >= n % 2 && y >= n / 2) spMatrix->At(x - n % 2, y - n / 2) = 1;
    return spMatrix;
}

TLayerPtr CRasterLayerBuffer::MergeWith(CLayerBuffer& other) {
    const auto* pRaster = dynamic_cast<const CRasterLayerBuffer*>(&other);
    const bool bFits = pRaster && canBeMergedWith(other) && other.GetSize() == GetSize() &&
                       pRaster->m_pRaster->IsCompatible(*m_pRaster);
    return bFits ? BakeLayers(*this, &other) : TLayerPtr();
}

void CRasterLayerBuffer::FollowColorMode() {
    CLayerBuffer::FollowColorMode();
    SetRaster(m_pRaster);
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

boost::shared_ptr<CRasterLayerBuffer> BakeLayers(CLayerBuffer& layer, CLayerBuffer* pUpper) {
    const auto pNewLayer = CreateRasterLayer(layer.GetCanvas());
    const auto& pBaseRaster = pNewLayer->GetRaster();
    SELF_CHECK(illegal_data, pNewLayer->GetDrawBuffer()->GetSize() == pBaseRaster->GetSize());
    SELF_CHECK(illegal_data, pNewLayer->GetDrawBuffer()->GetBlockSize() == pBaseRaster->GetBlockSize());
    layer.GetCanvas()->FlushCanvasUpdates();
    pBaseRaster->ForEachBlock([&](CPoint pt) {
        for (CLayerBuffer* pLayer : {&layer, pUpper})
            if (pLayer && pLayer->HasPicture(pt)) pLayer->PaintWithOpacity(*pBaseRaster->GetBlock(pt, true));
    });
    pNewLayer->setName(layer.GetName());
    pNewLayer->SetVisible(layer.IsVisible());
    return pNewLayer;
}
