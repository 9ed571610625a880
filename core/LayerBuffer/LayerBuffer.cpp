#include "core/LayerBuffer/LayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/LayerHistory.h"

#include <boost/make_shared.hpp>

#include <algorithm>

void CLayerBuffer::Create(const TCanvasPtr& pCanvas) {
    SELF_CHECK(illegal_data, pCanvas != nullptr);
    m_wpCanvas = pCanvas;
    m_size = pCanvas->GetSize();
    m_strName = L"NoName";
    m_picture.Create();
}

void CLayerBuffer::InitState(const std::wstring& strName, bool bVisible, uint8_t uOpacity) {
    m_strName = strName;
    m_bVisible = bVisible;
    GetDrawBuffer()->SetOpacity(uOpacity);
}

TCanvasPtr CLayerBuffer::GetCanvas() const {
    const TCanvasPtr pCanvas = m_wpCanvas.lock();
    SELF_CHECK(illegal_data, pCanvas != nullptr);
    return pCanvas;
}

void CLayerBuffer::setName(const std::wstring& strName, bool bHistory) {
    std::wstring strNew = strName;
    if (bHistory && strName != m_strName)
        GetCanvas()->GetHistory().Register(boost::make_shared<LayerRenameHistory>(
            L"レイヤー名変更", shared_from_this(), m_strName, strName));
    m_strName.swap(strNew);
}

void CLayerBuffer::SetVisible(bool bVisible, bool bModifies) {
    if (bModifies && bVisible != m_bVisible) GetCanvas()->GetHistory().SetModified(true);
    m_bVisible = bVisible;
    m_picture.FlagVisibility();
}

void CLayerBuffer::SetOpacity(uint8_t uOpacity, bool bHistory) {
    if (bHistory && uOpacity != GetOpacity()) {
        CHistoryStream& history = GetCanvas()->GetHistory();
        // A slider's way is one step: the newest entry takes the new value over if it is this layer's.
        auto* pNewest = dynamic_cast<LayerAlphaHistory*>(history.GetFoldable().get());
        if (pNewest && pNewest->IsOf(*this)) {
            pNewest->SetNew(uOpacity);
            history.SetModified(true);
        } else {
            history.Register(
                boost::make_shared<LayerAlphaHistory>(shared_from_this(), GetOpacity(), uOpacity));
        }
    }
    GetDrawBuffer()->SetOpacity(uOpacity);
    if (!IsPassThrough()) m_picture.MarkPicture();
}

void CLayerBuffer::LoadBlock(CPoint pt, const boost::shared_ptr<CWireImage>& spImage) {
    for (const TLayerPtr& spChild : m_lstChildren)
        if (spChild->IsVisible()) spChild->LoadBlock(pt, spImage);
}

void CLayerBuffer::DropBlock(CPoint pt) {
    GetDrawBuffer()->ShareBlock(pt, {});
    for (const TLayerPtr& spChild : m_lstChildren) spChild->DropBlock(pt);
}

void CLayerBuffer::DropCaches() {
    m_picture.Clear();
    for (const TLayerPtr& spChild : m_lstChildren) spChild->DropCaches();
}

void CLayerBuffer::FollowColorMode(IProgress& progress) {
    m_picture.Create();
    for (const TLayerPtr& spChild : m_lstChildren) spChild->FollowColorMode(progress);
    progress.Advance();
}

void CLayerBuffer::Resize(CSize sz, const TLayerChange& change, IProgress& progress) {
    m_size = sz;
    m_picture.Create();
    for (const TLayerPtr& spChild : m_lstChildren) spChild->Resize(sz, change, progress);
}

uint64_t CLayerBuffer::CountResizeSteps(CSize sz) const {
    uint64_t uSteps = 0;
    for (const TLayerPtr& spChild : m_lstChildren) uSteps += spChild->CountResizeSteps(sz);
    return uSteps;
}

void CLayerBuffer::PushBackup(TPlaneList& lstPlanes) const {
    for (const TLayerPtr& spChild : m_lstChildren) spChild->PushBackup(lstPlanes);
}

void CLayerBuffer::SwapBackup(TPlaneList& lstPlanes, TPlaneList::iterator& itPlane) {
    for (const TLayerPtr& spChild : m_lstChildren) spChild->SwapBackup(lstPlanes, itPlane);
}

TLayerPtr CLayerBuffer::CreateFullCopy(const TCanvasPtr& spCanvas) const {
    const TLayerPtr spCopy = CreateLike(spCanvas);
    spCopy->CopyContent(*this);
    return spCopy;
}

void CLayerBuffer::CopyContent(const CLayerBuffer& other) {
    InitState(other.m_strName, other.m_bVisible, other.GetOpacity());
    const TLayerPtr spActive = other.GetActiveChild();
    for (const TLayerPtr& spChild : other.m_lstChildren)
        InitChild(spChild->CreateFullCopy(GetCanvas()), spChild == spActive);
}

size_t CLayerBuffer::GetBytes(const CLayerBuffer* pTwin) const {
    // Trees of another shape cannot be compared.
    const bool bTwin = pTwin && pTwin->m_lstChildren.size() == m_lstChildren.size();
    size_t nBytes = GetOwnBytes(pTwin);
    auto itTwin = bTwin ? pTwin->m_lstChildren.begin() : TLayerList::const_iterator();
    for (const TLayerPtr& spChild : m_lstChildren)
        nBytes += spChild->GetBytes(bTwin ? (itTwin++)->get() : nullptr);
    return nBytes;
}

bool CLayerBuffer::UpdateStrokes(uint64_t uNumber) {
    bool bChanged = false;
    for (const TLayerPtr& spChild : m_lstChildren) bChanged |= spChild->UpdateStrokes(uNumber);
    return bChanged;
}

uint64_t CLayerBuffer::GetNextStroke() const {
    uint64_t uNext = NO_STROKE;
    for (const TLayerPtr& spChild : m_lstChildren) uNext = std::min(uNext, spChild->GetNextStroke());
    return uNext;
}

bool CLayerBuffer::IsBehind() const {
    return std::any_of(m_lstChildren.begin(), m_lstChildren.end(),
                       [](const TLayerPtr& spChild) { return spChild->IsBehind(); });
}

bool CLayerBuffer::canBeMergedWith(const CLayerBuffer& other) const {
    return &other != this && m_lstChildren.empty() && other.m_lstChildren.empty();
}
