// Undo of operations that rebuild the whole document.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/History/SymmetricHistory.h"

/// For the duration of an operation the canvas works on a complete copy of its tree and this guard keeps
/// the original: earlier undo steps refer to the original layers and stay valid once it is restored.
/// Without Commit the destructor restores the original.
class CanvasBufferHistoryHelper : boost::noncopyable {
public:
    CanvasBufferHistoryHelper(std::wstring strName, const boost::shared_ptr<CCanvasBuffer>& spCanvas);
    /// Ends the operation and registers its undo step.
    void Commit();

private:
    std::wstring m_strName;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    CSymmetricHistoryHelper<CCanvasBuffer, CCanvasBuffer::FullBackup> m_helper;
};

/// Replaces the selection (null: nothing selected) by an undoable action of that label, after merging
/// complete strokes.
void ChangeSelection(const boost::shared_ptr<CCanvasBuffer>& spCanvas,
                     const boost::shared_ptr<CSelectBuffer>& spSelect, std::wstring strName);

/// Resizes the canvas to 1 to MAX_CANVAS_SIDE on each side, with the content that `change` makes, by an
/// undoable action of that label. Raises cancelled_error, after which nothing has changed.
void ResizeCanvas(const boost::shared_ptr<CCanvasBuffer>& spCanvas, CSize sz, const TLayerChange& change,
                  std::wstring strName, IProgress& progress = NoProgress());

/// Changes the formats of draw buffers and of raster layers' pixels by an undoable action. False when the
/// canvas has them already. Raises cancelled_error, after which nothing has changed.
bool ChangeColorMode(const boost::shared_ptr<CCanvasBuffer>& spCanvas, bool bColor, bool bColorRaster,
                     IProgress& progress = NoProgress());
