// Operations on the layer tree: children are added, removed and moved.
#include "core/LayerBuffer/LayerBuffer.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/FloatHistory.h"
#include "core/LayerBuffer/LayerHistory.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <memory>

std::unique_ptr<CFloatDrop> CLayerBuffer::DropForStep(bool bHistory) const {
    return bHistory ? std::make_unique<CFloatDrop>(GetCanvas()) : nullptr;
}

void CLayerBuffer::AddLayer(const TLayerPtr& spLayer, int idxLayer, bool bHistory) {
    const int nCount = static_cast<int>(m_lstChildren.size());
    const int idx = idxLayer == -1 ? nCount : idxLayer;
    SELF_CHECK(invalid_argument, spLayer != nullptr && 0 <= idx && idx <= nCount);
    ExpectRoomFor(*spLayer);
    TLayerList lstLayer{spLayer};
    const auto pDrop = DropForStep(bHistory);
    if (bHistory)
        GetCanvas()->GetHistory().Register(
            boost::make_shared<CAddDelLayerHistory<true>>(shared_from_this(), idx, spLayer));
    Attach(lstLayer, idx);
}

void CLayerBuffer::Attach(TLayerList& lstLayer, int idxLayer) {
    m_picture.FlagComing(lstLayer.front()->m_picture);
    m_lstChildren.splice(std::next(m_lstChildren.begin(), idxLayer), lstLayer);
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
    lstLayer.front()->m_picture.AddPictureTo(GetDrawBuffer()->GetDirty());
    return lstLayer;
}

void CLayerBuffer::InitChild(const TLayerPtr& spLayer, bool bActive) {
    m_lstChildren.push_back(spLayer);
    if (bActive) m_wpActive = spLayer;
}

void CLayerBuffer::RemoveLayer(TLayerPtr spLayer, bool bHistory) {
    const int idx = IndexOf(*spLayer);
    SELF_CHECK(invalid_argument, 0 <= idx);
    const auto pDrop = DropForStep(bHistory);
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
    const auto pDrop = DropForStep(bHistory);
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
    for (auto it = itNow; it != itNowEnd; ++it) spLayer->m_picture.FlagComing((*it)->m_picture);
    for (auto it = itOld; it != itOldEnd; ++it) {
        (*it)->m_picture.AddPictureTo(spLayer->GetDrawBuffer()->GetDirty());
        if (spLayer->IndexOf(**it) < 0) (*it)->DropCaches();
    }
}

size_t CLayerBuffer::GetBytesBeside(const TLayerPtr& spLayer, const TLayerList& lst) {
    size_t nBytes = 0;
    for (const TLayerPtr& spOther : lst)
        if (spLayer && spLayer->IndexOf(*spOther) < 0) nBytes += spOther->GetBytes(nullptr);
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
