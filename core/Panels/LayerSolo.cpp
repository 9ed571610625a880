#include "core/Panels/LayerSolo.h"

namespace {

void Show(CLayerBuffer& layer, bool bVisible) {
    if (layer.IsVisible() != bVisible) layer.SetVisible(bVisible, true);
}

} // namespace

void CLayerSolo::Restore() {
    for (const auto& [wpLayer, bVisible] : m_vBefore)
        if (const TLayerPtr spLayer = wpLayer.lock()) Show(*spLayer, bVisible);
    m_vBefore.clear();
    m_wpLayer.reset();
}

void CLayerSolo::Toggle(CCanvasBuffer& canvas, const TLayerPtr& spLayer) {
    const bool bBack = m_wpLayer.lock() == spLayer;
    // Another document stays as it is.
    if (m_wpCanvas.lock().get() != &canvas) m_vBefore.clear();
    Restore();
    if (bBack) return;
    m_wpLayer = spLayer;
    m_wpCanvas = canvas.weak_from_this();
    TLayerPtr spInner = spLayer;
    while (const TLayerPtr spParent = canvas.GetRoot().FindParentOf(*spInner)) {
        for (const TLayerPtr& spChild : spParent->GetChildren()) {
            m_vBefore.emplace_back(spChild, spChild->IsVisible());
            Show(*spChild, spChild == spInner);
        }
        spInner = spParent;
    }
}
