#include "core/CanvasFrame/LayerCommands.h"

#include "core/AppModule/CommandIds.h"
#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/LayerBuffer/LayerMerge.h"
#include "core/LayerBuffer/LayerSetBuffer.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <algorithm>
#include <iterator>

namespace {

// A layer and its place in the tree.
struct TPlace {
    TLayerPtr spLayer;
    TLayerPtr spParent;
    int idxLayer = -1;

    explicit TPlace(const TLayerPtr& sp, CCanvasBuffer& canvas) : spLayer(sp) {
        if (!spLayer) return;
        spParent = canvas.GetRoot().FindParentOf(*spLayer);
        idxLayer = spParent->IndexOf(*spLayer);
    }
    explicit operator bool() const { return spLayer != nullptr; }
    // The next layer below among the siblings, null for none.
    TLayerPtr Below() const {
        return idxLayer > 0 ? *std::next(spParent->GetChildren().begin(), idxLayer - 1) : TLayerPtr();
    }
    bool IsClipped() const { return spParent && spParent->IsClipping(); }
    // The layer that this one would be clipped to.
    TLayerPtr ClippingBase() const {
        const TLayerPtr spBelow = Below();
        return spBelow && spBelow->IsClipping() ? spBelow : TLayerPtr();
    }
    bool CanMerge() const { return idxLayer > 0 && Below()->canBeMergedWith(*spLayer); }
};

std::wstring UniqueName(const CLayerBuffer& parent, const std::wstring& strBase) {
    const auto isTaken = [&](const std::wstring& strName) {
        return std::any_of(parent.GetChildren().begin(), parent.GetChildren().end(),
                           [&](const TLayerPtr& spChild) { return spChild->GetName() == strName; });
    };
    std::wstring strName = strBase;
    for (int n = 2; isTaken(strName); ++n) strName = FormatText(L"%1% (%2%)", {strBase, std::to_wstring(n)});
    return strName;
}

void InsertNew(const boost::shared_ptr<CCanvasBuffer>& spCanvas, const TLayerPtr& spLayer,
               const wchar_t* pszName) {
    const TPlace active(spCanvas->GetActiveLayer(), *spCanvas);
    TLayerPtr spParent = active ? active.spParent : spCanvas->GetRoot().shared_from_this();
    int idxLayer = active ? active.idxLayer + 1 : -1;
    if (dynamic_cast<CLayerSetBuffer*>(active.spLayer.get())) {
        spParent = active.spLayer;
        idxLayer = -1;
    }
    spLayer->setName(UniqueName(*spParent, pszName));
    spParent->AddLayer(spLayer, idxLayer);
    spCanvas->SelectLayer(spLayer);
}

void ToggleClipping(const TPlace& place, CCanvasBuffer& canvas) {
    if (place.IsClipped()) {
        const TPlace base(place.spParent, canvas);
        place.spParent->MoveLayer(place.spLayer, base.spParent, base.idxLayer + 1);
    } else {
        place.spParent->MoveLayer(place.spLayer, place.ClippingBase(), -1);
    }
}

} // namespace

bool IsLayerCommand(int nId) {
    return (nId >= ID_LAYER_NEW_RASTER && nId <= ID_LAYER_RASTERIZE) ||
           (nId >= ID_MODE_GREY && nId <= ID_MODE_LIGHT);
}

TCommandState GetLayerCommandState(CCanvasBuffer& canvas, int nId) {
    const TPlace place(canvas.GetActiveLayer(), canvas);
    switch (nId) {
    case ID_LAYER_NEW_RASTER:
    case ID_LAYER_NEW_VECTOR:
    case ID_LAYER_NEW_SET:
        return {true};
    case ID_LAYER_DELETE:
        return {bool(place)};
    case ID_LAYER_CLIPPING:
        return {place && (place.IsClipped() || place.ClippingBase()), place.IsClipped()};
    case ID_LAYER_MERGE_DOWN:
        return {place && place.CanMerge()};
    case ID_LAYER_RASTERIZE:
        return {place && place.spLayer->IsRasterizable()};
    case ID_MODE_GREY:
        return {true, !canvas.IsColorRaster()};
    case ID_MODE_RGB:
        return {true, canvas.IsColorRaster()};
    case ID_MODE_LIGHT:
        return {canvas.IsColorRaster(), canvas.IsColorRaster() && !canvas.IsColor()};
    default:
        return {};
    }
}

bool DoLayerCommand(const boost::shared_ptr<CCanvasBuffer>& spCanvas, int nId) {
    if (!GetLayerCommandState(*spCanvas, nId).bEnabled) return false;
    const TPlace place(spCanvas->GetActiveLayer(), *spCanvas);
    switch (nId) {
    case ID_LAYER_NEW_RASTER:
        InsertNew(spCanvas, CreateRasterLayer(spCanvas), L"新規ラスタレイヤー");
        return true;
    case ID_LAYER_NEW_VECTOR:
        InsertNew(spCanvas, CreateVectorLayer(spCanvas), L"新規ベクタレイヤー");
        return true;
    case ID_LAYER_NEW_SET:
        InsertNew(spCanvas, CreateLayerSet(spCanvas), L"新規レイヤーセット");
        return true;
    case ID_LAYER_DELETE:
        place.spParent->RemoveLayer(place.spLayer);
        return true;
    case ID_LAYER_CLIPPING:
        ToggleClipping(place, *spCanvas);
        return true;
    case ID_LAYER_MERGE_DOWN:
        MergeLayers(place.spParent, place.Below(), place.spLayer);
        return true;
    case ID_LAYER_RASTERIZE:
        RasterizeLayer(place.spParent, place.spLayer);
        return true;
    case ID_MODE_GREY:
        return ChangeColorMode(spCanvas, false, false);
    case ID_MODE_RGB:
        return ChangeColorMode(spCanvas, true, true);
    case ID_MODE_LIGHT:
        return ChangeColorMode(spCanvas, !spCanvas->IsColor(), true);
    default:
        return false;
    }
}
