#include "core/RasterMove/SelectionCommands.h"

#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/LayerBuffer/FloatHistory.h"
#include "core/LayerBuffer/RasterGuard.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/StrokeHistory.h"

#include <boost/make_shared.hpp>

#include <vector>

namespace {

bool IsAllSelected(const CCanvasBuffer& canvas) {
    const auto& spSelect = canvas.GetSelect();
    if (!spSelect || canvas.GetFloatState().spFloat) return false;
    bool bAll = true;
    spSelect->GetMask().ForEachBlock(
        [&](CPoint pt) { bAll = bAll && spSelect->GetMaskTile(pt) == FullSelectTile().get(); });
    return bAll;
}

bool HasPaintUnder(CRasterBuffer& plane, const CSelectBuffer& select) {
    bool bAny = false;
    plane.ForEachBlockIn(select.GetBound(), [&](CPoint pt) {
        const CAlphaBlock8* pMask = select.GetMask().FindBlock(pt);
        if (bAny || !pMask || !plane.HasBlock(pt)) return;
        const std::vector<uint8_t> vAlpha = plane.GetBlock(pt, false)->CopyAlpha();
        for (size_t i = 0; i < vAlpha.size(); ++i) bAny = bAny || (vAlpha[i] && pMask->GetAlpha()[i]);
    });
    return bAny;
}

} // namespace

boost::shared_ptr<CRasterLayerBuffer> ActiveRasterLayer(const CCanvasBuffer& canvas) {
    return boost::dynamic_pointer_cast<CRasterLayerBuffer>(canvas.GetActiveLayer());
}

bool SelectAll(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    if (IsAllSelected(*spCanvas)) return false;
    const auto spSelect = boost::make_shared<CSelectBuffer>(spCanvas->GetSize());
    spSelect->SelectAll();
    spSelect->UpdateOutline();
    ChangeSelection(spCanvas, spSelect, L"全選択");
    return true;
}

bool Deselect(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    if (!spCanvas->GetSelect() && !spCanvas->GetFloatState().spFloat) return false;
    ChangeSelection(spCanvas, {}, L"選択解除");
    return true;
}

bool CanClear(const CCanvasBuffer& canvas) {
    const auto spLayer = ActiveRasterLayer(canvas);
    return spLayer && (spLayer->GetFloat() || canvas.GetSelect());
}

bool ClearSelected(const boost::shared_ptr<CCanvasBuffer>& spCanvas, const wchar_t* pszLabel) {
    if (!CanClear(*spCanvas)) return false;
    spCanvas->CompleteWork();
    const auto pLayer = ActiveRasterLayer(*spCanvas);
    SELF_CHECK(illegal_data, pLayer);
    if (pLayer->GetFloat()) {
        spCanvas->GetHistory().Register(boost::make_shared<CRasterMoveHistory>(
            pszLabel, spCanvas, spCanvas->GetFloatState(), nullptr, nullptr));
        spCanvas->SetFloatState({});
        return true;
    }
    const auto pRaster = pLayer->GetRaster();
    SELF_CHECK(illegal_data, pRaster);
    if (!HasPaintUnder(*pRaster, *spCanvas->GetSelect())) return false;
    CRasterGuard guard(pRaster);
    ClearUnder(*pRaster, *spCanvas->GetSelect());
    spCanvas->GetHistory().Register(
        boost::make_shared<CCommitStrokeBufferHistory>(pszLabel, guard.GetBefore(), pRaster));
    guard.Keep();
    return true;
}
