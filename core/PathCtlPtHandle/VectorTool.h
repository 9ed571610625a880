// Tools that work on a vector layer.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/Tools/Tools.h"

/// The reason why a tool cannot work on vector layers, as CTools::GetRefusal; `spLayer` is the active layer.
const wchar_t* GetVectorRefusal(const TLayerPtr& spLayer);

/// Does nothing unless the active layer is a visible vector layer.
class CVectorTool : public CTools {
public:
    using CTools::CTools;

    bool IsEnabled() const override { return GetRefusal() == nullptr; }
    const wchar_t* GetRefusal() const override { return GetVectorRefusal(GetLayer()); }

protected:
    /// The layer of the running operation, or else the active one; null when it is no vector layer.
    boost::shared_ptr<CVectorLayerBuffer> GetVectorLayer() const;
    /// Adds a done action to the history of the operation's canvas. Raises internal_error without one.
    void RegisterHistory(const boost::shared_ptr<CHistory>& spHistory) const;
    /// Sets the function by which undo cancels the running operation; an empty one removes it. Raises
    /// internal_error without a canvas.
    void RegisterHistoryCancel(const boost::function<bool()>& fnCancel) const;
    /// A length in pixels at 96 dpi in pixels of the view's window.
    int32_t ToWindowPixels(int32_t nPixels) const;
    /// The pick tolerance in pixels of the window.
    int32_t GetReach(uint32_t flags) const;
    /// The movement in pixels of the window at which a press becomes a drag.
    int32_t GetThreshold(uint32_t flags) const;
    /// Squared distance of two positions in pixels of the window.
    int64_t WindowDistance(CPoint a, CPoint b) const;
    /// The modifiers that are held now, as flags of an event.
    uint32_t GetHeldKeys() const;
};
