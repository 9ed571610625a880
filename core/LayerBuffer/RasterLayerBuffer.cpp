#include "core/LayerBuffer/RasterLayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/StrokeHistory.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "core/RasterBuffer/SelectBuffer.h"
#include "core/RasterStroke/RasterStroke.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

// The blocks of a layer that a block of a stroke's plane shows in: a finer plane is reduced by a window that
// reaches into the blocks on the right and below, so each shows on the left and above too.
template <class Function>
void ForEachReached(const CAlphaBufferBase& plane, CPoint ptBlock, Function fn) {
    const int nReach = plane.GetResolutionScale() == 1 ? 0 : 1;
    for (int32_t y = std::max(0, ptBlock.y - nReach); y <= ptBlock.y; ++y)
        for (int32_t x = std::max(0, ptBlock.x - nReach); x <= ptBlock.x; ++x) fn(x, y);
}

void AddReach(CBoolMatrix& matrix, const CBoolMatrix& changes, const CAlphaBufferBase& plane) {
    for (int32_t y = 0; y < changes.GetSize().cy; ++y)
        for (int32_t x = 0; x < changes.GetSize().cx; ++x)
            if (changes.At(x, y))
                ForEachReached(plane, {x, y}, [&](int32_t nX, int32_t nY) { matrix.At(nX, nY) = 1; });
}

// True when the plane may have coverage in the layer's block at `pt`.
bool CoversBlock(const CAlphaBufferBase& plane, CPoint pt) {
    const int nScale = plane.GetResolutionScale();
    const CSize szBlock = plane.GetBlockSize();
    for (int n = 0; n < (nScale == 1 ? 1 : 4); ++n)
        if (plane.HasBlock({pt.x * nScale + n % 2 * szBlock.cx, pt.y * nScale + n / 2 * szBlock.cy}))
            return true;
    return false;
}

} // namespace

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
    bool bAny = m_pRaster->GetBlock(pt, false) != nullptr;
    ForEachStroke([&](const CAlphaBufferBase& plane, const CSelectBuffer*) {
        const int n = plane.GetResolutionScale();
        const_cast<CAlphaBufferBase&>(plane).DirtyAt({pt.x * n, pt.y * n}) = 0;
        bAny = bAny || CoversBlock(plane, pt);
    });
    return bAny;
}

void CRasterLayerBuffer::RenderOwn(CRasterBlockBuffer& dest) const {
    const CPoint pt = dest.GetPosition();
    const auto spMask = m_pMask->GetBlock(pt, false);
    boost::shared_ptr<CRasterBlockBuffer> spWork;
    // Paint in progress stays inside its selection: where that has no tile nothing is painted.
    ForEachStroke([&](const CAlphaBufferBase& plane, const CSelectBuffer* pSelect) {
        const CRasterBlockBuffer* pSelected = pSelect ? pSelect->GetMaskTile(pt) : nullptr;
        if ((pSelect && !pSelected) || !CoversBlock(plane, pt)) return;
        if (!spWork) {
            spWork = m_pRaster->CreateBlock(pt);
            m_pRaster->BlendBlockInto(*spWork, nullptr);
        }
        plane.BlendBlockInto(*spWork, pSelected);
    });
    if (spWork)
        spWork->BlendInto(dest, spMask.get());
    else
        m_pRaster->BlendBlockInto(dest, spMask.get());
}

boost::shared_ptr<CRasterBlockBuffer> CRasterLayerBuffer::GetOwnTile(CPoint pt) const {
    bool bPlain = IsPictureCached(GetCanvas()->IsColorRaster()) && !m_pMask->GetBlock(pt, false);
    ForEachStroke([&](const CAlphaBufferBase& plane, const CSelectBuffer*) {
        bPlain = bPlain && !CoversBlock(plane, pt);
    });
    return bPlain ? m_pRaster->GetBlock(pt, false) : boost::shared_ptr<CRasterBlockBuffer>();
}

boost::shared_ptr<CBoolMatrix> CRasterLayerBuffer::GetChangeMatrix() const {
    auto spMatrix = boost::make_shared<CBoolMatrix>(m_pRaster->GetBufferSize());
    spMatrix->Or(m_pRaster->GetDirty());
    spMatrix->Or(m_pMask->GetDirty());
    ForEachStroke([&](const CAlphaBufferBase& plane, const CSelectBuffer*) {
        AddReach(*spMatrix, plane.GetDirty(), plane);
    });
    return spMatrix;
}

template <class Function>
void CRasterLayerBuffer::ForEachStroke(Function fn) const {
    for (const TQueuedStroke& queued : m_deqQueue) fn(queued.spStroke->GetDisplay(), queued.spSelect.get());
    if (m_spStroke) fn(m_spStroke->GetDisplay(), GetCanvas()->GetSelect().get());
}

// Flags what the stroke shows, and what it has stopped showing since the last redraw.
void CRasterLayerBuffer::FlagStroke(CRasterStroke& stroke) {
    const CAlphaBufferBase& plane = stroke.GetDisplay();
    m_pRaster->ForEachBlock([&](CPoint pt) {
        if (CoversBlock(plane, pt)) m_pRaster->DirtyAt(pt) = 1;
    });
    AddReach(m_pRaster->GetDirty(), plane.GetDirty(), plane);
}

void CRasterLayerBuffer::SetStroke(const boost::shared_ptr<CRasterStroke>& spStroke) {
    if (m_spStroke) FlagStroke(*m_spStroke);
    m_spStroke = spStroke;
}

void CRasterLayerBuffer::QueueStroke() {
    if (!m_spStroke) return;
    const TCanvasPtr spCanvas = GetCanvas();
    m_deqQueue.push_back({m_spStroke, spCanvas->GetSelect(), spCanvas->TakeStrokeNumber()});
    m_spStroke.reset();
}

bool CRasterLayerBuffer::UpdateStrokes(uint64_t uNumber) {
    const bool bChildren = CLayerBuffer::UpdateStrokes(uNumber);
    const auto spStroke = m_deqQueue.empty() ? m_spStroke : m_deqQueue.front().spStroke;
    if (!spStroke) return bChildren;
    m_bBehind = !spStroke->Update();
    if (!m_bBehind && !m_deqQueue.empty() && m_deqQueue.front().uNumber == uNumber) {
        MergeStroke(m_deqQueue.front());
        m_deqQueue.pop_front();
    }
    return true;
}

uint64_t CRasterLayerBuffer::GetNextStroke() const {
    const uint64_t uOwn = m_deqQueue.empty() ? NO_STROKE : m_deqQueue.front().uNumber;
    return std::min(uOwn, CLayerBuffer::GetNextStroke());
}

bool CRasterLayerBuffer::IsBehind() const {
    return !m_deqQueue.empty() || (m_spStroke && m_bBehind) || CLayerBuffer::IsBehind();
}

void CRasterLayerBuffer::MergeStroke(const TQueuedStroke& queued) {
    CRasterStroke& stroke = *queued.spStroke;
    const auto spBefore = m_pRaster->ShallowCopy();
    const CAlphaBufferBase& plane = stroke.GetMain();
    const CSelectBuffer* pSelect = queued.spSelect.get();
    FlagStroke(stroke);
    bool bAny = false;
    const auto paint = [&](CPoint pt) {
        const CRasterBlockBuffer* pSelected = pSelect ? pSelect->GetMaskTile(pt) : nullptr;
        if (!CoversBlock(plane, pt) || (pSelect && !pSelected)) return;
        if (plane.IsErase() && !m_pRaster->HasBlock(pt)) return;
        plane.BlendBlockInto(*m_pRaster->GetWritableBlock(pt), pSelected);
        bAny = true;
    };
    try {
        m_pRaster->ForEachBlock(paint);
        if (bAny)
            GetCanvas()->GetHistory().Register(
                boost::make_shared<CCommitStrokeBufferHistory>(stroke.GetName(), *spBefore, m_pRaster));
    } catch (...) {
        // The stroke stays in the queue and is merged later: nothing of it may be there twice.
        m_pRaster->ForEachBlock([&](CPoint pt) { m_pRaster->SetBlock(pt, spBefore->GetBlock(pt, false)); });
        throw;
    }
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

void CRasterLayerBuffer::Resize(CSize sz, const TLayerChange& change) {
    CLayerBuffer::Resize(sz, change);
    const auto spRaster = m_pRaster->CreateSized(sz, m_pRaster->GetBlockSize());
    change.fnPlane(*m_pRaster, *spRaster);
    m_pMask = ChangeMask(*m_pMask, sz, change);
    SetRaster(spRaster);
}

void CRasterLayerBuffer::PushBackup(TPlaneList& lstPlanes) const {
    lstPlanes.push_back(m_pRaster->ShallowCopy());
    CLayerBuffer::PushBackup(lstPlanes);
}

void CRasterLayerBuffer::SwapBackup(TPlaneList& lstPlanes, TPlaneList::iterator& itPlane) {
    SELF_CHECK(invalid_argument, itPlane != lstPlanes.end());
    m_pRaster->Swap(**itPlane++);
    CLayerBuffer::SwapBackup(lstPlanes, itPlane);
}

boost::shared_ptr<CRasterBlockBuffer> CRasterLayerBuffer::CreateFlatBlock() {
    return m_pRaster->ExtractBlock(m_pRaster->GetRect(), false, nullptr);
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

TLayerPtr CRasterLayerBuffer::CreateLike(const TCanvasPtr& spCanvas) const {
    return CreateRasterLayer(spCanvas);
}

void CRasterLayerBuffer::CopyContent(const CLayerBuffer& other) {
    CLayerBuffer::CopyContent(other);
    const auto& raster = dynamic_cast<const CRasterLayerBuffer&>(other);
    SetRaster(raster.m_pRaster->ShallowCopy());
    m_pMask = boost::static_pointer_cast<CAlphaBufferImpl<uint8_t>>(raster.m_pMask->ShallowCopy());
}

size_t CRasterLayerBuffer::GetOwnBytes(const CLayerBuffer* pTwin) const {
    const auto* pRaster = dynamic_cast<const CRasterLayerBuffer*>(pTwin);
    return m_pRaster->GetBytes(pRaster ? pRaster->m_pRaster.get() : nullptr) +
           m_pMask->GetBytes(pRaster ? pRaster->m_pMask.get() : nullptr);
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
