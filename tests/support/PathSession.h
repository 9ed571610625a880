// A session over vector layers in which the test draws with the path tools.
#pragma once

#include "tests/support/ToolSession.h"

class CPathSession : public CToolSession {
public:
    explicit CPathSession(CSize sz = {400, 300}, int nLayers = 1) : CToolSession(CreateCanvas(sz)) {
        for (int n = 0; n < nLayers; ++n) {
            m_vLayers.push_back(CreateVectorLayer(m_spCanvas));
            m_vLayers.back()->SetLayerColor(0);
            m_spCanvas->GetRoot().AddLayer(m_vLayers.back(), -1, false);
        }
        m_spCanvas->GetRoot().SetActiveChild(m_vLayers.front());
    }

    /// An operation on the whole canvas, and its undo, replaces the layers by others.
    void TakeLayers() {
        m_vLayers.clear();
        for (const TLayerPtr& spLayer : m_spCanvas->GetRoot().GetChildren())
            m_vLayers.push_back(boost::dynamic_pointer_cast<CVectorLayerBuffer>(spLayer));
    }

    CVectorLayerBuffer& Layer() const { return *m_vLayers.front(); }
    /// The anchors of a path of the first layer, the lowest path being 0.
    std::vector<CPoint> Anchors(int idxPath) const {
        const CPathStream& stream = (*std::next(Layer().GetPaths().begin(), idxPath))->GetStream();
        std::vector<CPoint> vAnchors;
        for (size_t n = 0; n < stream.ControlPointCount(); ++n)
            vAnchors.push_back(stream.GetControlPoint(n)->GetAnchor()[STATE_COMMITTED]);
        return vAnchors;
    }

    std::vector<boost::shared_ptr<CVectorLayerBuffer>> m_vLayers;
};
