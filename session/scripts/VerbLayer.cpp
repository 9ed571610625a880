// The verb "layer": selects a layer and changes its properties.
#include "core/AppModule/PrivateMessages.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "session/scripts/DocumentState.h"
#include "session/scripts/Player.h"
#include "session/scripts/Verbs.h"

#include <nlohmann/json.hpp>

#include <iterator>
#include <optional>

namespace {

constexpr int64_t MAX_CHILD = 65535;

struct TLayerStep {
    std::vector<size_t> vPath; ///< child indices from the root down, empty for the active layer
    std::optional<std::wstring> strName;
    std::optional<bool> bVisible;
    std::optional<uint8_t> uOpacity;
};

std::vector<size_t> ReadPath(const CScriptValue& value) {
    if (!value.GetJson().is_array() || value.GetJson().empty())
        value.Refuse("must be a list of child indices");
    std::vector<size_t> vPath;
    for (const auto& member : value.GetJson())
        vPath.push_back(static_cast<size_t>(CScriptValue(member, value.GetName()).Integer(0, MAX_CHILD)));
    return vPath;
}

TLayerPtr FindChild(const CLayerBuffer& parent, size_t idx) {
    const TLayerList& lstChildren = parent.GetChildren();
    if (idx >= lstChildren.size()) throw step_failure("there is no layer at that path");
    return *std::next(lstChildren.begin(), static_cast<std::ptrdiff_t>(idx));
}

// Resolves the whole path before it selects anything, so that a wrong path has no effect.
void SelectPath(CCanvasBuffer& canvas, const std::vector<size_t>& vPath) {
    TLayerPtr spLayer;
    for (const size_t idx : vPath) spLayer = FindChild(spLayer ? *spLayer : canvas.GetRoot(), idx);
    canvas.SelectLayer(spLayer);
}

void Play(const TLayerStep& change) {
    CCanvasFrame& frame = GetActiveFrame();
    CCanvasBuffer& canvas = *frame.GetCanvas();
    if (!change.vPath.empty()) SelectPath(canvas, change.vPath);
    const TLayerPtr spLayer = canvas.GetActiveLayer();
    if (!spLayer) throw step_failure("no layer is selected");
    if (change.strName) spLayer->setName(*change.strName, true);
    if (change.bVisible) spLayer->SetVisible(*change.bVisible, true);
    if (change.uOpacity) spLayer->SetOpacity(*change.uOpacity, true);
    PostToMainFrame(WM_REFRESH_ALL);
    frame.RaiseRefresh();
    frame.GetWindow()->Invalidate();
}

} // namespace

TAction ReadLayer(const CScriptValue& value) {
    value.Object({"select", "name", "visible", "opacity"});
    if (value.GetJson().empty()) value.Refuse("must say what to select or change");
    TLayerStep change;
    if (value.Has("select")) change.vPath = ReadPath(value.At("select"));
    if (value.Has("name")) change.strName = value.At("name").Text();
    if (value.Has("visible")) change.bVisible = value.At("visible").Flag();
    if (value.Has("opacity")) change.uOpacity = static_cast<uint8_t>(value.At("opacity").Integer(0, 255));
    return [change](CPlayer&) { Play(change); };
}
