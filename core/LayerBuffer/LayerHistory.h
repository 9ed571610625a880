// Undoable changes of the layer tree.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

/// A layer was added to (true) or deleted from (false) its parent. This object owns the layer, which may be
/// in no tree; it holds the parent weakly.
template <bool bAdd>
class CAddDelLayerHistory : public CHistory {
public:
    CAddDelLayerHistory(const TLayerPtr& spParent, int idxLayer, const TLayerPtr& spLayer)
        : CHistory(bAdd ? L"レイヤー追加" : L"レイヤー削除"), m_wpParent(spParent),
          m_bActive(spParent->GetActiveChild() == spLayer), m_bHolds(!bAdd), m_idxLayer(idxLayer),
          m_spLayer(spLayer) {}

    void Undo() override { Apply(!bAdd); }
    void Redo() override { Apply(bAdd); }

protected:
    size_t CountBytes() const override { return m_bHolds ? m_spLayer->GetBytes(nullptr) : 0; }

private:
    void Apply(bool bInsert) {
        const TLayerPtr spParent = m_wpParent.lock();
        if (!spParent) return;
        m_bHolds = !bInsert;
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
    bool m_bHolds;  ///< the layer is in no tree and belongs to this object
    int m_idxLayer;
    TLayerPtr m_spLayer;
};

/// A layer was moved in the tree. This object owns the layer, which is in no tree during the move.
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

/// Base of changes of a single value of a layer.
template <class Layer, class Value>
class CLayerValueHistory : public CHistory {
public:
    CLayerValueHistory(std::wstring strLabel, const boost::shared_ptr<Layer>& spLayer, Value valueOld,
                       Value valueNew)
        : CHistory(std::move(strLabel)), m_wpLayer(spLayer), m_valueOld(std::move(valueOld)),
          m_valueNew(std::move(valueNew)) {}

    void Undo() override { ApplyIfThere(m_valueOld); }
    void Redo() override { ApplyIfThere(m_valueNew); }
    bool IsOf(const Layer& layer) const { return m_wpLayer.lock().get() == &layer; }
    /// Updates the new value for a further change of the same layer.
    void SetNew(Value value) { m_valueNew = std::move(value); }

protected:
    virtual void Apply(Layer& layer, const Value& value) const = 0;

private:
    void ApplyIfThere(const Value& value) {
        if (const auto spLayer = m_wpLayer.lock()) Apply(*spLayer, value);
    }

    boost::weak_ptr<Layer> m_wpLayer;
    Value m_valueOld;
    Value m_valueNew;
};

/// A layer's opacity was changed.
class LayerAlphaHistory : public CLayerValueHistory<CLayerBuffer, uint8_t> {
public:
    LayerAlphaHistory(const TLayerPtr& spLayer, uint8_t uOld, uint8_t uNew)
        : CLayerValueHistory(L"不透明度変更", spLayer, uOld, uNew) {}

protected:
    void Apply(CLayerBuffer& layer, const uint8_t& uOpacity) const override { layer.SetOpacity(uOpacity); }
};

/// A layer was renamed; the caller supplies the label.
class LayerRenameHistory : public CLayerValueHistory<CLayerBuffer, std::wstring> {
public:
    using CLayerValueHistory::CLayerValueHistory;

protected:
    void Apply(CLayerBuffer& layer, const std::wstring& strName) const override { layer.setName(strName); }
};

/// A vector layer's colour was changed; the caller supplies the label.
class SetLayerColorHistory : public CLayerValueHistory<CVectorLayerBuffer, TColor> {
public:
    using CLayerValueHistory::CLayerValueHistory;

protected:
    void Apply(CVectorLayerBuffer& layer, const TColor& color) const override { layer.SetLayerColor(color); }
};
