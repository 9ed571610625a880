#include "core/Panels/LayerRows.h"

#include "core/Base/Percent.h"
#include "core/LayerBuffer/LayerSetBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <boost/range/adaptor/reversed.hpp>

#include <algorithm>

namespace {

constexpr char ICON_SET[] = "icons/layer-set.svg";

const wchar_t* KindOf(const CLayerBuffer& layer) {
    if (dynamic_cast<const CLayerSetBuffer*>(&layer)) return L"セット";
    return dynamic_cast<const CVectorLayerBuffer*>(&layer) ? L"ベクタ" : L"ラスタ";
}

} // namespace

void CLayerRows::Read(CCanvasBuffer* pCanvas) {
    m_vRows.clear();
    std::erase_if(m_setFolded, [](const auto& wpLayer) { return wpLayer.expired(); });
    m_wpCanvas.reset();
    if (!pCanvas) return;
    m_wpCanvas = pCanvas->weak_from_this();
    Append(pCanvas->GetRoot(), 0);
}

void CLayerRows::Append(const CLayerBuffer& parent, int nDepth) {
    for (const TLayerPtr& spLayer : parent.GetChildren() | boost::adaptors::reversed) {
        m_vRows.push_back({spLayer, nDepth});
        if (!IsFolded(spLayer)) Append(*spLayer, nDepth + 1);
    }
}

bool CLayerRows::IsFolded(const TLayerPtr& spLayer) const { return m_setFolded.contains(spLayer); }

TLayerPtr CLayerRows::GetLayer(int nRow) const {
    return 0 <= nRow && nRow < GetCount() ? m_vRows[static_cast<size_t>(nRow)].wpLayer.lock() : TLayerPtr();
}

int CLayerRows::FindRow(const CLayerBuffer& layer) const {
    for (int nRow = GetCount() - 1; nRow >= 0; --nRow) {
        const TLayerPtr spLayer = GetLayer(nRow);
        if (spLayer && (spLayer.get() == &layer || (IsFolded(spLayer) && spLayer->GetDepthOf(layer) > 0)))
            return nRow;
    }
    return -1;
}

std::vector<TTreeRow> CLayerRows::MakeTree() const {
    std::vector<TTreeRow> vTree;
    std::vector<bool> vShown; // of the rows above, by depth
    std::vector<bool> vClips;
    for (const TRow& row : m_vRows) {
        const TLayerPtr spLayer = row.wpLayer.lock();
        TTreeRow& tree = vTree.emplace_back();
        tree.nDepth = row.nDepth;
        if (!spLayer) continue;
        const auto nDepth = static_cast<size_t>(row.nDepth);
        vShown.resize(nDepth);
        vClips.resize(nDepth);
        tree.strText = spLayer->GetName();
        tree.strNote = std::wstring(KindOf(*spLayer)) + L"  " +
                       std::to_wstring(PercentOfByte(spLayer->GetOpacity())) + L"%";
        if (!spLayer->GetChildren().empty()) tree.fold = IsFolded(spLayer) ? EFold::Closed : EFold::Open;
        tree.eye = spLayer->IsVisible() ? EEye::Shown : EEye::Hidden;
        tree.bClipped = nDepth > 0 && vClips.back();
        tree.bDim = !spLayer->IsVisible() || std::ranges::find(vShown, false) != vShown.end();
        if (!spLayer->IsClipping()) tree.strIcon = ICON_SET;
        vShown.push_back(spLayer->IsVisible());
        vClips.push_back(spLayer->IsClipping());
    }
    return vTree;
}

void CLayerRows::Fold(int nRow, bool bClosed) {
    const TLayerPtr spLayer = GetLayer(nRow);
    if (!spLayer || spLayer->GetChildren().empty()) return;
    if (bClosed)
        m_setFolded.insert(spLayer);
    else
        m_setFolded.erase(spLayer);
}

TLayerPlace CLayerRows::FindPlace(int nFrom, int nTo, EDropAt at) const {
    const auto spCanvas = m_wpCanvas.lock();
    const TLayerPtr spLayer = GetLayer(nFrom);
    const TLayerPtr spTarget = GetLayer(nTo);
    if (!spCanvas || !spLayer || (!spTarget && nTo < GetCount())) return {};
    const bool bOpen = spTarget && !spTarget->GetChildren().empty() && !IsFolded(spTarget);
    TLayerPlace place;
    if (!spTarget) {
        place = {spCanvas->GetRoot().shared_from_this(), 0};
    } else if (at == EDropAt::Onto || (at == EDropAt::Below && bOpen)) {
        // The line below an open layer is the one above its first child.
        place = {spTarget, static_cast<int>(spTarget->GetChildren().size())};
    } else {
        const TLayerPtr spParent = spCanvas->GetRoot().FindParentOf(*spTarget);
        if (!spParent) return {};
        place = {spParent, spParent->IndexOf(*spTarget) + (at == EDropAt::Above)};
    }
    if (spLayer->GetDepthOf(*place.spParent) >= 0) return {};
    const int idxNow = place.spParent->IndexOf(*spLayer);
    if (idxNow < 0) return place;
    // The layer leaves its place before it takes the new one.
    if (idxNow < place.idxLayer) --place.idxLayer;
    return place.idxLayer == idxNow ? TLayerPlace() : place;
}
