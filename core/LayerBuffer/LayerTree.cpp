// Operations on the layer tree: children are added, removed and moved.
#include "core/LayerBuffer/LayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/LayerHistory.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>

void CLayerBuffer::AddLayer(const TLayerPtr& spLayer, int idxLayer, bool bHistory) {
    const int nCount = static_cast<int>(m_lstChildren.size());
    const int idx = idxLayer == -1 ? nCount : idxLayer;
    SELF_CHECK(invalid_argument, spLayer != nullptr && 0 <= idx && idx <= nCount);
    ExpectRoomFor(*spLayer);
    TLayerList lstLayer{spLayer};
    if (bHistory)
        GetCanvas()->GetHistory().Register(
            boost::make_shared<CAddDelLayerHistory<true>>(shared_from_this(), idx, spLayer));
    Attach(lstLayer, idx);
}

void CLayerBuffer::Attach(TLayerList& lstLayer, int idxLayer) {
    FlagComing(*lstLayer.front());
    m_lstChildren.splice(std::next(m_lstChildren.begin(), idxLayer), lstLayer);
}

// Flags what a child that comes into the list shows.
void CLayerBuffer::FlagComing(CLayerBuffer& child) {
    child.UpdateFlags();
    child.DropNeedlessFlags();
    child.AddPictureTo(m_pDrawBuffer->GetDirty());
}

// A new layer, and one whose caches were dropped, has every flag set: here those go that stand for nothing.
// The others are all passed on once more, since the layer has another parent.
void CLayerBuffer::DropNeedlessFlags() {
    for (const TLayerPtr& spChild : m_lstChildren) spChild->DropNeedlessFlags();
    m_pDrawBuffer->ForEachBlock([&](CPoint pt) {
        if (m_pDrawBuffer->DirtyAt(pt) && !m_pDrawBuffer->HasBlock(pt) && !MayPaintAt(pt))
            m_pDrawBuffer->ClearDirty(pt);
    });
    m_pDrawBuffer->GetDirty().RenewAll();
}

TLayerList CLayerBuffer::Detach(int idxLayer) {
    TLayerList lstLayer;
    const auto iterLayer = std::next(m_lstChildren.begin(), idxLayer);
    const auto iter = std::next(iterLayer);
    lstLayer.splice(lstLayer.begin(), m_lstChildren, iterLayer);
    // The next layer below becomes active, as in the list that the user sees.
    if (m_wpActive.lock() == lstLayer.front())
        m_wpActive = iter != m_lstChildren.begin() ? *std::prev(iter)
                     : iter != m_lstChildren.end() ? *iter
                                                   : TLayerPtr();
    lstLayer.front()->AddPictureTo(m_pDrawBuffer->GetDirty());
    return lstLayer;
}

void CLayerBuffer::RemoveLayer(TLayerPtr spLayer, bool bHistory) {
    const int idx = IndexOf(*spLayer);
    SELF_CHECK(invalid_argument, 0 <= idx);
    if (bHistory)
        GetCanvas()->GetHistory().Register(
            boost::make_shared<CAddDelLayerHistory<false>>(shared_from_this(), idx, spLayer));
    Detach(idx);
    spLayer->DropCaches();
}

void CLayerBuffer::MoveLayer(TLayerPtr spLayer, const TLayerPtr& spParent, int idxLayer, bool bHistory) {
    const int idxOld = IndexOf(*spLayer);
    const bool bBelow = spParent == spLayer || spLayer->FindParentOf(*spParent);
    const int nCount = static_cast<int>(spParent->m_lstChildren.size()) - (spParent.get() == this ? 1 : 0);
    const int idxNew = idxLayer == -1 ? nCount : idxLayer;
    SELF_CHECK(invalid_argument, 0 <= idxOld && !bBelow && 0 <= idxNew && idxNew <= nCount);
    spParent->ExpectRoomFor(*spLayer);
    const TCanvasPtr spCanvas = GetCanvas();
    const TLayerPtr spActive = spCanvas->GetActiveLayer();
    const bool bActive = spActive && (spActive == spLayer || spLayer->FindParentOf(*spActive));
    if (bHistory)
        spCanvas->GetHistory().Register(
            boost::make_shared<CMoveLayerHistory>(shared_from_this(), idxOld, spParent, idxNew, spLayer));
    TLayerList lstLayer = Detach(idxOld);
    spParent->Attach(lstLayer, idxNew);
    if (bActive) spCanvas->SelectLayer(spActive);
}

void CLayerBuffer::SwapChildren(const TLayerPtr& spLayer, TLayerList* pList) {
    if (!spLayer) return;
    TLayerList& lstNow = spLayer->m_lstChildren;
    const TLayerPtr spActive = spLayer->GetActiveChild();
    lstNow.swap(*pList);
    // The entries between the first difference and the common tail were replaced or have changed places.
    auto [itNow, itOld] = std::mismatch(lstNow.begin(), lstNow.end(), pList->begin(), pList->end());
    auto itNowEnd = lstNow.end();
    auto itOldEnd = pList->end();
    while (itNowEnd != itNow && itOldEnd != itOld && *std::prev(itNowEnd) == *std::prev(itOldEnd))
        --itNowEnd, --itOldEnd;
    if (spActive && spLayer->IndexOf(*spActive) < 0)
        spLayer->SetActiveChild(itNowEnd == lstNow.begin() ? TLayerPtr() : *std::prev(itNowEnd));
    for (auto it = itNow; it != itNowEnd; ++it) spLayer->FlagComing(**it);
    for (auto it = itOld; it != itOldEnd; ++it) {
        (*it)->AddPictureTo(spLayer->m_pDrawBuffer->GetDirty());
        if (spLayer->IndexOf(**it) < 0) (*it)->DropCaches();
    }
}

size_t CLayerBuffer::GetBytesBeside(const TLayerPtr& spLayer, const TLayerList& lst) {
    size_t nBytes = 0;
    for (const TLayerPtr& spOther : lst)
        if (spLayer && spLayer->IndexOf(*spOther) < 0) nBytes += spOther->GetBytes(nullptr);
    return nBytes;
}

void CLayerBuffer::DropCaches() {
    m_pDrawBuffer->Clear();
    m_pThumbnail->Clear();
    MarkAllDirty();
    for (const TLayerPtr& spChild : m_lstChildren) spChild->DropCaches();
}

TLayerPtr CLayerBuffer::CreateFullCopy(const TCanvasPtr& spCanvas) const {
    const TLayerPtr spCopy = CreateLike(spCanvas);
    spCopy->CopyContent(*this);
    return spCopy;
}

void CLayerBuffer::CopyContent(const CLayerBuffer& other) {
    m_strName = other.m_strName;
    m_bVisible = other.m_bVisible;
    m_pDrawBuffer->SetOpacity(other.GetOpacity());
    const TLayerPtr spActive = other.GetActiveChild();
    for (const TLayerPtr& spChild : other.m_lstChildren) {
        m_lstChildren.push_back(spChild->CreateFullCopy(GetCanvas()));
        if (spChild == spActive) m_wpActive = m_lstChildren.back();
    }
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

TLayerPtr CLayerBuffer::FindParentOf(const CLayerBuffer& layer) {
    if (IndexOf(layer) >= 0) return shared_from_this();
    for (const TLayerPtr& spChild : m_lstChildren)
        if (const TLayerPtr spFound = spChild->FindParentOf(layer)) return spFound;
    return {};
}

int CLayerBuffer::GetNesting() const {
    int nNesting = 0;
    for (const TLayerPtr& spChild : m_lstChildren) nNesting = std::max(nNesting, spChild->GetNesting() + 1);
    return nNesting;
}

int CLayerBuffer::GetDepthOf(const CLayerBuffer& layer) const {
    if (&layer == this) return 0;
    for (const TLayerPtr& spChild : m_lstChildren)
        if (const int nDepth = spChild->GetDepthOf(layer); nDepth >= 0) return nDepth + 1;
    return -1;
}

// A file with deeper layers could never be opened again.
void CLayerBuffer::ExpectRoomFor(const CLayerBuffer& layer) const {
    // The depth above a parent in no tree is checked when the parent is added to one.
    const int nDepth = std::max(GetCanvas()->GetRoot().GetDepthOf(*this), 0);
    if (nDepth + 1 + layer.GetNesting() > MAX_LAYER_NESTING)
        throw refused_error(
            L"レイヤーの階層が深すぎます。\n\n浅い階層のレイヤーを選択してから操作してください。");
}

int CLayerBuffer::IndexOf(const CLayerBuffer& layer) const {
    const auto it = std::find_if(m_lstChildren.begin(), m_lstChildren.end(),
                                 [&](const TLayerPtr& spChild) { return spChild.get() == &layer; });
    return it == m_lstChildren.end() ? -1 : static_cast<int>(std::distance(m_lstChildren.begin(), it));
}

void CLayerBuffer::FollowVisibility(const CLayerBuffer& other) {
    // An operation that failed halfway may have left another shape, and is undone.
    if (m_lstChildren.size() != other.m_lstChildren.size()) return;
    auto itOther = other.m_lstChildren.begin();
    for (const TLayerPtr& spChild : m_lstChildren) {
        const CLayerBuffer& twin = **itOther++;
        if (spChild->m_bVisible != twin.m_bVisible) spChild->SetVisible(twin.m_bVisible);
        spChild->FollowVisibility(twin);
    }
}
