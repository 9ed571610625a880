#include "core/CanvasFrame/LayerCommands.h"

#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/CanvasBuffer/NewLayer.h"
#include "core/Commands/CommandIds.h"
#include "core/LayerBuffer/LayerMerge.h"
#include "core/LayerBuffer/LayerSetBuffer.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

// A layer and its position in the tree.
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
    // The clipping base that this layer would get.
    TLayerPtr ClippingBase() const {
        const TLayerPtr spBelow = Below();
        return spBelow && spBelow->IsClipping() ? spBelow : TLayerPtr();
    }
    bool CanMerge() const { return idxLayer > 0 && Below()->canBeMergedWith(*spLayer); }
};

void InsertNew(const boost::shared_ptr<CCanvasBuffer>& spCanvas, const TLayerPtr& spLayer,
               const wchar_t* pszName) {
    const TNewPlace place = FindNewPlace(*spCanvas);
    spLayer->setName(UniqueLayerName(*place.spParent, pszName));
    place.spParent->AddLayer(spLayer, place.idxLayer);
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

using TCanvas = boost::shared_ptr<CCanvasBuffer>;

struct TLayerCommand {
    int nId;
    bool (*fnEnabled)(const TPlace& active, const CCanvasBuffer& canvas);
    bool (*fnChecked)(const TPlace& active, const CCanvasBuffer& canvas);
    bool (*fnDo)(const TPlace& active, const TCanvas& spCanvas,
                 IProgress& progress); ///< true when the tree has changed
};

bool Always(const TPlace&, const CCanvasBuffer&) { return true; }
bool Never(const TPlace&, const CCanvasBuffer&) { return false; }
bool IsColored(const TPlace&, const CCanvasBuffer& canvas) { return canvas.IsColorRaster(); }

const TLayerCommand COMMANDS[] = {
    {ID_LAYER_NEW_RASTER, Always, Never,
     [](const TPlace&, const TCanvas& spCanvas, IProgress&) {
         InsertNew(spCanvas, CreateRasterLayer(spCanvas), NEW_RASTER_LAYER);
         return true;
     }},
    {ID_LAYER_NEW_VECTOR, Always, Never,
     [](const TPlace&, const TCanvas& spCanvas, IProgress&) {
         const auto spLayer = CreateVectorLayer(spCanvas);
         spLayer->SetLayerColor(0); // white lines would not be seen on the paper
         InsertNew(spCanvas, spLayer, NEW_VECTOR_LAYER);
         return true;
     }},
    {ID_LAYER_NEW_SET, Always, Never,
     [](const TPlace&, const TCanvas& spCanvas, IProgress&) {
         InsertNew(spCanvas, CreateLayerSet(spCanvas), L"新規レイヤーセット");
         return true;
     }},
    {ID_LAYER_DELETE, [](const TPlace& active, const CCanvasBuffer&) { return bool(active); }, Never,
     [](const TPlace& active, const TCanvas&, IProgress&) {
         active.spParent->RemoveLayer(active.spLayer);
         return true;
     }},
    {ID_LAYER_CLIPPING,
     [](const TPlace& active, const CCanvasBuffer&) {
         return active && (active.IsClipped() || active.ClippingBase());
     },
     [](const TPlace& active, const CCanvasBuffer&) { return active.IsClipped(); },
     [](const TPlace& active, const TCanvas& spCanvas, IProgress&) {
         ToggleClipping(active, *spCanvas);
         return true;
     }},
    {ID_LAYER_MERGE_DOWN,
     [](const TPlace& active, const CCanvasBuffer&) { return active && active.CanMerge(); }, Never,
     [](const TPlace& active, const TCanvas&, IProgress& progress) {
         MergeLayers(active.spParent, active.Below(), active.spLayer, progress);
         return true;
     }},
    {ID_LAYER_RASTERIZE,
     [](const TPlace& active, const CCanvasBuffer&) { return active && active.spLayer->IsRasterizable(); },
     Never,
     [](const TPlace& active, const TCanvas&, IProgress& progress) {
         RasterizeLayer(active.spParent, active.spLayer, progress);
         return true;
     }},
    {ID_MODE_GREY, Always, [](const TPlace&, const CCanvasBuffer& canvas) { return !canvas.IsColorRaster(); },
     [](const TPlace&, const TCanvas& spCanvas, IProgress& progress) {
         return ChangeColorMode(spCanvas, false, false, progress);
     }},
    {ID_MODE_RGB, Always, IsColored,
     [](const TPlace&, const TCanvas& spCanvas, IProgress& progress) {
         return ChangeColorMode(spCanvas, true, true, progress);
     }},
    {ID_MODE_LIGHT, IsColored,
     [](const TPlace&, const CCanvasBuffer& canvas) { return canvas.IsColorRaster() && !canvas.IsColor(); },
     [](const TPlace&, const TCanvas& spCanvas, IProgress& progress) {
         return ChangeColorMode(spCanvas, !spCanvas->IsColor(), true, progress);
     }},
};

const TLayerCommand& Find(int nId) {
    const auto it = std::ranges::find(COMMANDS, nId, &TLayerCommand::nId);
    SELF_CHECK(invalid_argument, it != std::end(COMMANDS));
    return *it;
}

} // namespace

std::span<const int> GetLayerCommands() {
    static const std::vector<int> vIds = [] {
        std::vector<int> v;
        std::ranges::transform(COMMANDS, std::back_inserter(v), &TLayerCommand::nId);
        return v;
    }();
    return vIds;
}

TCommandState GetLayerCommandState(CCanvasBuffer& canvas, int nId) {
    const TPlace active(canvas.GetActiveLayer(), canvas);
    const TLayerCommand& command = Find(nId);
    return {command.fnEnabled(active, canvas), command.fnChecked(active, canvas)};
}

bool DoLayerCommand(const boost::shared_ptr<CCanvasBuffer>& spCanvas, int nId, IProgress& progress) {
    const TPlace active(spCanvas->GetActiveLayer(), *spCanvas);
    const TLayerCommand& command = Find(nId);
    return command.fnEnabled(active, *spCanvas) && command.fnDo(active, spCanvas, progress);
}
