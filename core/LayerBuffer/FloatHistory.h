// Undo of everything that floating pixels do, and the scope that merges them before another change.
#pragma once

#include "core/History/History.h"
#include "core/LayerBuffer/FloatingPixels.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "core/LayerBuffer/TileSwap.h"

/// Pixels began to float, moved, were merged or vanished: exchanges the canvas's float, its selection and the
/// tiles of one layer that differ.
class CRasterMoveHistory : public CHistory {
public:
    /// `before` is the canvas's state from before the change. `pRasterBefore`, null when no layer has
    /// changed, is a shallow copy of `spRaster` from before it.
    CRasterMoveHistory(std::wstring strName, const TCanvasPtr& spCanvas, const TFloatState& before,
                       CRasterBuffer* pRasterBefore, const boost::shared_ptr<CRasterBuffer>& spRaster);

    void Undo() override { Swap(); }
    void Redo() override { Swap(); }

protected:
    size_t CountBytes() const override;

private:
    void Swap();

    boost::weak_ptr<ILayerCanvas> m_wpCanvas;
    TFloatState m_state;
    CTileSwap m_tiles;
};

/// Merges what floats into its layer for an operation that changes the layer's pixels, the selection, the
/// tree or the canvas. The merge becomes part of the undo step that the operation registers; when none has
/// been registered at the scope's end, the pixels float again. Scopes may be nested.
class CFloatDrop : boost::noncopyable {
public:
    /// Only what floats above `pLayer`; with null, above any layer. Raises an exception, after which nothing
    /// has changed, only when memory runs out.
    explicit CFloatDrop(const TCanvasPtr& spCanvas, const CLayerBuffer* pLayer = nullptr);
    ~CFloatDrop();
    /// True when there was something to merge.
    bool HasDropped() const { return m_spHistory != nullptr; }

private:
    TCanvasPtr m_spCanvas;
    boost::shared_ptr<CHistory> m_spHistory;
};
