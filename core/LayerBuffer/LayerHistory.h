// Undoable changes of the layer tree.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/LayerBuffer.h"

/// A layer was added to (true) or deleted from (false) its parent. The layer itself is kept alive here, since
/// it may be in no tree; the parent is held weakly.
template <bool bAdd>
class CAddDelLayerHistory : public CHistory {
public:
    CAddDelLayerHistory(const TLayerPtr& spParent, int idxLayer, const TLayerPtr& spLayer)
        : CHistory(bAdd ? L"レイヤー追加" : L"レイヤー削除"), m_wpParent(spParent),
          m_bActive(spParent->GetActiveChild() == spLayer), m_idxLayer(idxLayer), m_spLayer(spLayer) {}

    void Undo() override { Apply(!bAdd); }
    void Redo() override { Apply(bAdd); }

private:
    void Apply(bool bInsert) {
        const TLayerPtr spParent = m_wpParent.lock();
        if (!spParent) return;
        if (bInsert) {
            spParent->AddLayer(m_spLayer, m_idxLayer, false);
            if (m_bActive) spParent->SetActiveChild(m_spLayer);
        } else {
            m_bActive = spParent->GetActiveChild() == m_spLayer;
            spParent->RemoveLayer(m_spLayer, false);
            if (m_bActive) spParent->SetActiveChild({});
        }
    }

    boost::weak_ptr<CLayerBuffer> m_wpParent;
    bool m_bActive; ///< the layer was its parent's active child when it was last in the tree
    int m_idxLayer;
    TLayerPtr m_spLayer;
};
