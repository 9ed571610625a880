#include "core/LayerBuffer/LayerMerge.h"

#include "core/Base/Failure.h"
#include "core/History/SymmetricHistory.h"
#include "core/LayerBuffer/FloatHistory.h"

#include <algorithm>

namespace {

// Replaces a run of children, from `pLayer` to `pLast`, by one layer; one undo step.
void ReplaceChildren(const TLayerPtr& spParent, const TLayerPtr& pLayer, const TLayerPtr& pLast,
                     const TLayerPtr& pMerged, const wchar_t* pszLabel) {
    TLayerList lstMerged = spParent->GetChildren();
    auto iter = std::find(lstMerged.begin(), lstMerged.end(), pLayer);
    SELF_CHECK(defect_logic, iter != lstMerged.end());
    SELF_CHECK(defect_logic, *iter == pLayer);
    *iter = pMerged;
    if (pLast != pLayer) lstMerged.remove(pLast);
    CLayerBuffer::SwapChildren(spParent, &lstMerged);
    CSymmetricHistoryHelper<CLayerBuffer, TLayerList> helper(
        spParent, std::move(lstMerged), {CLayerBuffer::SwapChildren, CLayerBuffer::GetBytesBeside});
    helper.Commit(pszLabel, spParent->GetCanvas()->GetHistory());
}

} // namespace

boost::shared_ptr<CRasterLayerBuffer> BakeLayers(CLayerBuffer& layer, CLayerBuffer* pUpper,
                                                 IProgress& progress) {
    const auto pNewLayer = CreateRasterLayer(layer.GetCanvas());
    const auto& pBaseRaster = pNewLayer->GetRaster();
    SELF_CHECK(illegal_data, pNewLayer->GetDrawBuffer()->GetSize() == pBaseRaster->GetSize());
    SELF_CHECK(illegal_data, pNewLayer->GetDrawBuffer()->GetBlockSize() == pBaseRaster->GetBlockSize());
    layer.GetCanvas()->FlushCanvasUpdates();
    progress.Begin(pUpper ? L"レイヤーを結合しています" : L"ラスタライズしています",
                   pBaseRaster->GetBlockCount());
    pBaseRaster->ForEachBlock([&](CPoint pt) {
        progress.Advance();
        for (CLayerBuffer* pLayer : {&layer, pUpper})
            if (pLayer && pLayer->GetPicture().HasPicture(pt))
                pLayer->GetPicture().PaintWithOpacity(*pBaseRaster->GetBlock(pt, true));
    });
    pNewLayer->setName(layer.GetName());
    pNewLayer->SetVisible(layer.IsVisible());
    return pNewLayer;
}

void MergeLayers(const TLayerPtr& spParent, const TLayerPtr& pBaseLayer, const TLayerPtr& pSuperimposeLayer,
                 IProgress& progress) {
    SELF_CHECK(illegal_data, pBaseLayer->canBeMergedWith(*pSuperimposeLayer));
    const CFloatDrop drop(spParent->GetCanvas());
    const TLayerPtr pMerged = pBaseLayer->MergeWith(*pSuperimposeLayer, progress);
    SELF_CHECK(illegal_data, pMerged);
    ReplaceChildren(spParent, pBaseLayer, pSuperimposeLayer, pMerged, L"レイヤ結合");
}

void RasterizeLayer(const TLayerPtr& spParent, const TLayerPtr& pLayer, IProgress& progress) {
    SELF_CHECK(illegal_data, pLayer->IsRasterizable());
    const CFloatDrop drop(spParent->GetCanvas());
    ReplaceChildren(spParent, pLayer, pLayer, BakeLayers(*pLayer, nullptr, progress), L"ラスタライズ");
}
