#include "core/LayerBuffer/RasterLayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/FloatHistory.h"
#include "core/LayerBuffer/LayerMerge.h"
#include "core/LayerBuffer/RasterGuard.h"
#include "core/LayerBuffer/StrokeHistory.h"
#include "core/LayerBuffer/StrokeOverlay.h"
#include "core/RasterBuffer/PlaneKind.h"

#include <boost/make_shared.hpp>

#include <algorithm>

void CRasterLayerBuffer::Create(const TCanvasPtr& spCanvas) {
    CLayerBuffer::Create(spCanvas);
    m_pMask = boost::make_shared<CAlphaBufferImpl<uint8_t>>();
    m_pMask->Create(GetSize(), DEFAULT_BLOCKSIZE);
    SetRaster(CreatePlane(spCanvas->IsColorRaster(), GetSize(), DEFAULT_BLOCKSIZE));
}

void CRasterLayerBuffer::SetRaster(const boost::shared_ptr<CRasterBuffer>& pRaster) {
    SELF_CHECK(illegal_data, pRaster != nullptr);
    const auto& pMask = m_pMask;
    SELF_CHECK(illegal_data, pRaster->GetBufferSize() == pMask->GetBufferSize());
    const auto pOld = m_pRaster;
    m_pRaster = ConvertPlane(pRaster, GetCanvas()->IsColorRaster());
    // Stale are the blocks in which either plane has pixels.
    CBoolMatrix& dirty = m_pRaster->GetDirty();
    m_pRaster->AddTilesTo(dirty);
    if (!pOld || pOld == m_pRaster || !pOld->IsCompatible(*m_pRaster)) return;
    pOld->AddTilesTo(dirty);
    dirty.Or(pOld->GetDirty());
}

template <class Function>
void CRasterLayerBuffer::ForEachOverlay(Function fn) const {
    if (m_spOverlay)
        fn(*m_spOverlay);
    else if (m_spFloat)
        fn(*m_spFloat);
    for (const auto& spQueued : m_deqQueue) fn(*spQueued);
    if (m_spStroke) fn(*m_spStroke);
}

bool CRasterLayerBuffer::PrepareOwn(CPoint pt) {
    m_pRaster->ClearDirty(pt);
    m_pMask->ClearDirty(pt);
    ForEachOverlay([&](IRasterOverlay& overlay) { overlay.ClearFlag(pt); });
    return MayPaintAt(pt);
}

bool CRasterLayerBuffer::MayPaintAt(CPoint pt) const {
    bool bAny = m_pRaster->HasBlock(pt);
    ForEachOverlay([&](const IRasterOverlay& overlay) { bAny = bAny || overlay.CoversBlock(pt); });
    return bAny;
}

void CRasterLayerBuffer::RenderOwn(CRasterBlockBuffer& dest) const {
    const CPoint pt = dest.GetPosition();
    const auto spMask = m_pMask->GetBlock(pt, false);
    boost::shared_ptr<CRasterBlockBuffer> spWork;
    ForEachOverlay([&](const IRasterOverlay& overlay) {
        if (!overlay.CoversBlock(pt)) return;
        if (!spWork) {
            spWork = m_pRaster->CreateBlock(pt);
            m_pRaster->BlendBlockInto(*spWork, nullptr);
        }
        overlay.PaintInto(*spWork);
    });
    if (spWork)
        spWork->BlendInto(dest, spMask.get());
    else
        m_pRaster->BlendBlockInto(dest, spMask.get());
}

boost::shared_ptr<CRasterBlockBuffer> CRasterLayerBuffer::GetOwnTile(CPoint pt) const {
    const TCanvasPtr spCanvas = GetCanvas();
    bool bPlain = spCanvas->IsColor() == spCanvas->IsColorRaster() && !m_pMask->GetBlock(pt, false);
    ForEachOverlay([&](const IRasterOverlay& overlay) { bPlain = bPlain && !overlay.CoversBlock(pt); });
    return bPlain ? m_pRaster->GetBlock(pt, false) : boost::shared_ptr<CRasterBlockBuffer>();
}

void CRasterLayerBuffer::GetChangeMatrix(CBoolMatrix& matrix) {
    m_pRaster->GetDirty().PassTo(matrix);
    m_pMask->GetDirty().PassTo(matrix);
    ForEachOverlay([&](IRasterOverlay& overlay) { overlay.PassFlags(matrix); });
}

void CRasterLayerBuffer::FlagOverlay(IRasterOverlay& overlay) {
    m_pRaster->ForEachBlock([&](CPoint pt) {
        if (overlay.CoversBlock(pt)) m_pRaster->SetDirty(pt);
    });
    overlay.PassFlags(m_pRaster->GetDirty());
}

void CRasterLayerBuffer::SetStroke(const boost::shared_ptr<CRasterStroke>& spStroke) {
    if (m_spStroke) FlagOverlay(*m_spStroke);
    m_spStroke.reset();
    if (spStroke) m_spStroke = boost::make_shared<CStrokeOverlay>(spStroke, GetCanvas());
}

void CRasterLayerBuffer::QueueStroke() {
    if (!m_spStroke) return;
    m_spStroke->Complete();
    m_deqQueue.push_back(m_spStroke);
    m_spStroke.reset();
}

void CRasterLayerBuffer::SetFloat(const boost::shared_ptr<CFloatingPixels>& spFloat) {
    // On the road of each pointer event: only blocks that a float can reach are looked at.
    for (const CFloatingPixels* p : {m_spFloat.get(), spFloat.get()})
        if (p)
            m_pRaster->ForEachBlockIn(p->GetRect(), [&](CPoint pt) {
                if (p->CoversBlock(pt)) m_pRaster->SetDirty(pt);
            });
    m_spFloat = spFloat;
}

boost::shared_ptr<CRasterBuffer> CRasterLayerBuffer::GetSettled() const {
    if (!m_spFloat) return m_pRaster;
    const auto spSettled = m_pRaster->ShallowCopy();
    spSettled->ForEachBlockIn(m_spFloat->GetRect(), [&](CPoint pt) { m_spFloat->MergeInto(*spSettled, pt); });
    return spSettled;
}

void CRasterLayerBuffer::SetOverlay(const boost::shared_ptr<IRasterOverlay>& spOverlay) {
    if (m_spFloat) FlagOverlay(*m_spFloat);
    for (const auto& sp : {m_spOverlay, spOverlay})
        if (sp) FlagOverlay(*sp);
    m_spOverlay = spOverlay;
}

bool CRasterLayerBuffer::UpdateStrokes(uint64_t uNumber) {
    const bool bChildren = CLayerBuffer::UpdateStrokes(uNumber);
    const auto spStroke = m_deqQueue.empty() ? m_spStroke : m_deqQueue.front();
    if (!spStroke) return bChildren;
    m_bBehind = !spStroke->GetStroke().Update();
    if (!m_bBehind && !m_deqQueue.empty() && spStroke->GetNumber() == uNumber) {
        Merge(*spStroke);
        m_deqQueue.pop_front();
    }
    return true;
}

uint64_t CRasterLayerBuffer::GetNextStroke() const {
    const uint64_t uOwn = m_deqQueue.empty() ? NO_STROKE : m_deqQueue.front()->GetNumber();
    return std::min(uOwn, CLayerBuffer::GetNextStroke());
}

bool CRasterLayerBuffer::IsBehind() const {
    return !m_deqQueue.empty() || (m_spStroke && m_bBehind) || CLayerBuffer::IsBehind();
}

void CRasterLayerBuffer::Merge(CStrokeOverlay& stroke) {
    const CFloatDrop drop(GetCanvas(), this);
    // When this fails the stroke stays and is merged later: nothing of it may be there twice.
    CRasterGuard guard(m_pRaster);
    FlagOverlay(stroke);
    bool bAny = false;
    m_pRaster->ForEachBlock([&](CPoint pt) { bAny |= stroke.MergeInto(*m_pRaster, pt); });
    if (bAny)
        GetCanvas()->GetHistory().Register(boost::make_shared<CCommitStrokeBufferHistory>(
            stroke.GetStroke().GetName(), guard.GetBefore(), m_pRaster));
    guard.Keep();
}

TLayerPtr CRasterLayerBuffer::MergeWith(CLayerBuffer& other, IProgress& progress) {
    const auto* pRaster = dynamic_cast<const CRasterLayerBuffer*>(&other);
    const bool bFits = pRaster && canBeMergedWith(other) && other.GetSize() == GetSize() &&
                       pRaster->m_pRaster->IsCompatible(*m_pRaster);
    return bFits ? BakeLayers(*this, &other, progress) : TLayerPtr();
}

void CRasterLayerBuffer::FollowColorMode(IProgress& progress) {
    CLayerBuffer::FollowColorMode(progress);
    SetRaster(m_pRaster);
}

void CRasterLayerBuffer::Resize(CSize sz, const TLayerChange& change, IProgress& progress) {
    CLayerBuffer::Resize(sz, change, progress);
    const auto spRaster = m_pRaster->CreateSized(sz, m_pRaster->GetBlockSize());
    ChangePlane(*m_pRaster, *spRaster, change, progress);
    m_pMask = ChangeMask(*m_pMask, sz, change, progress);
    SetRaster(spRaster);
}

uint64_t CRasterLayerBuffer::CountResizeSteps(CSize sz) const {
    return 2 * CountChangeSteps(sz) + CLayerBuffer::CountResizeSteps(sz); // pixels and mask
}

void CRasterLayerBuffer::LoadBlock(CPoint pt, const boost::shared_ptr<CWireImage>& spImage) {
    CLayerBuffer::LoadBlock(pt, spImage);
    if (!m_spLeft) return;
    m_spLeft->LoadBlock(pt, spImage);
    if (m_spLeft == m_pRaster) return;
    ConvertBlock(*m_pRaster, *m_spLeft, pt);
    m_spLeft->ShareBlock(pt, {});
}

void CRasterLayerBuffer::DropBlock(CPoint pt) {
    CLayerBuffer::DropBlock(pt);
    if (m_spLeft) m_pRaster->ShareBlock(pt, {});
}

void CRasterLayerBuffer::PushBackup(TPlaneList& lstPlanes) const {
    lstPlanes.push_back(m_pRaster->ShallowCopy());
    CLayerBuffer::PushBackup(lstPlanes);
}

void CRasterLayerBuffer::SwapBackup(TPlaneList& lstPlanes, TPlaneList::iterator& itPlane) {
    SELF_CHECK(invalid_argument, itPlane != lstPlanes.end());
    CRasterBuffer& plane = **itPlane++;
    SELF_CHECK(invalid_argument, plane.IsCompatible(*m_pRaster));
    // Only tiles that differ change places, so that no other block is flagged.
    m_pRaster->ForEachBlock([&](CPoint pt) {
        const auto spOther = plane.GetBlock(pt, false);
        if (spOther != m_pRaster->GetBlock(pt, false)) plane.SetBlock(pt, m_pRaster->SetBlock(pt, spOther));
    });
    CLayerBuffer::SwapBackup(lstPlanes, itPlane);
}

boost::shared_ptr<CRasterBlockBuffer> CRasterLayerBuffer::CreateFlatBlock() {
    return m_pRaster->ExtractBlock(m_pRaster->GetRect(), false, nullptr);
}

bool CRasterLayerBuffer::canBeMergedWith(const CLayerBuffer& other) const {
    return CLayerBuffer::canBeMergedWith(other) && dynamic_cast<const CRasterLayerBuffer*>(&other);
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
