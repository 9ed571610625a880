// Undoable changes of the layer tree.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

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
        }
    }

    boost::weak_ptr<CLayerBuffer> m_wpParent;
    bool m_bActive; ///< the layer was its parent's active child when it was last in the tree
    int m_idxLayer;
    TLayerPtr m_spLayer;
};

/// A layer went to another place in the tree. The layer is kept alive here: on its way it is in no tree.
class CMoveLayerHistory : public CHistory {
public:
    CMoveLayerHistory(const TLayerPtr& spOldParent, int idxOld, const TLayerPtr& spNewParent, int idxNew,
                      const TLayerPtr& spLayer)
        : CHistory(L"レイヤー移動"), m_wpOldParent(spOldParent), m_wpNewParent(spNewParent), m_idxOld(idxOld),
          m_idxNew(idxNew), m_spLayer(spLayer) {}

    void Undo() override { Apply(false); }
    void Redo() override { Apply(true); }

private:
    void Apply(bool bForward) {
        const TLayerPtr spFrom = (bForward ? m_wpOldParent : m_wpNewParent).lock();
        const TLayerPtr spTo = (bForward ? m_wpNewParent : m_wpOldParent).lock();
        if (spFrom && spTo) spFrom->MoveLayer(m_spLayer, spTo, bForward ? m_idxNew : m_idxOld, false);
    }

    boost::weak_ptr<CLayerBuffer> m_wpOldParent;
    boost::weak_ptr<CLayerBuffer> m_wpNewParent;
    int m_idxOld;
    int m_idxNew;
    TLayerPtr m_spLayer;
};

/// A layer's opacity was changed.
class LayerAlphaHistory : public CHistory {
public:
    LayerAlphaHistory(const TLayerPtr& spLayer, uint8_t uOld, uint8_t uNew)
        : CHistory(L"不透明度変更"), m_wpLayer(spLayer), m_uOld(uOld), m_uNew(uNew) {}

    void Undo() override { Apply(m_uOld); }
    void Redo() override { Apply(m_uNew); }
    bool IsOf(const CLayerBuffer& layer) const { return m_wpLayer.lock().get() == &layer; }
    /// A further change of the same layer.
    void SetNewOpacity(uint8_t uNew) { m_uNew = uNew; }

private:
    void Apply(uint8_t uOpacity) {
        if (const TLayerPtr spLayer = m_wpLayer.lock()) spLayer->SetOpacity(uOpacity);
    }

    boost::weak_ptr<CLayerBuffer> m_wpLayer;
    uint8_t m_uOld;
    uint8_t m_uNew;
};

/// A layer was renamed; the label is the caller's.
class LayerRenameHistory : public CHistory {
public:
    LayerRenameHistory(std::wstring strLabel, const TLayerPtr& spLayer, std::wstring strOld,
                       std::wstring strNew)
        : CHistory(std::move(strLabel)), m_wpLayer(spLayer), m_strOld(std::move(strOld)),
          m_strNew(std::move(strNew)) {}

    void Undo() override { Apply(m_strOld); }
    void Redo() override { Apply(m_strNew); }

private:
    void Apply(const std::wstring& strName) {
        if (const TLayerPtr spLayer = m_wpLayer.lock()) spLayer->setName(strName);
    }

    boost::weak_ptr<CLayerBuffer> m_wpLayer;
    std::wstring m_strOld;
    std::wstring m_strNew;
};

/// A vector layer's colour was changed; the label is the caller's.
class SetLayerColorHistory : public CHistory {
public:
    SetLayerColorHistory(std::wstring strLabel, const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                         TColor colorOld, TColor colorNew)
        : CHistory(std::move(strLabel)), m_wpLayer(spLayer), m_colorOld(colorOld), m_colorNew(colorNew) {}

    void Undo() override { Apply(m_colorOld); }
    void Redo() override { Apply(m_colorNew); }

private:
    void Apply(TColor color) {
        if (const auto spLayer = m_wpLayer.lock()) spLayer->SetLayerColor(color);
    }

    boost::weak_ptr<CVectorLayerBuffer> m_wpLayer;
    TColor m_colorOld;
    TColor m_colorNew;
};
