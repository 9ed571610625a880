// Undo of operations that rebuild the whole document.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/History/SymmetricHistory.h"

/// For the time of an operation the canvas works on a complete copy of its tree and this guard keeps the
/// original, so that earlier undo steps, which know the original layers, stay valid once it is back. An
/// operation that leaves before Commit gets the original back.
class CanvasBufferHistoryHelper : boost::noncopyable {
public:
    CanvasBufferHistoryHelper(std::wstring strName, const boost::shared_ptr<CCanvasBuffer>& spCanvas);
    /// The operation is done: registers its action.
    void Commit();

private:
    std::wstring m_strName;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    CSymmetricHistoryHelper<CCanvasBuffer, CCanvasBuffer::FullBackup> m_helper;
};

/// Replaces the selection (null: nothing selected) by an undoable action of that label, after the strokes
/// that wait to be merged.
void ChangeSelection(const boost::shared_ptr<CCanvasBuffer>& spCanvas,
                     const boost::shared_ptr<CSelectBuffer>& spSelect, std::wstring strName);

/// Gives the canvas another size, from 1 to MAX_CANVAS_SIDE on each side, with its content as `change` makes
/// it, by an undoable action of that label.
void ResizeCanvas(const boost::shared_ptr<CCanvasBuffer>& spCanvas, CSize sz, const TLayerChange& change,
                  std::wstring strName);

/// Changes the kinds of draw buffers and of raster layers' pixels; an undoable action. False when the canvas
/// has them already.
bool ChangeColorMode(const boost::shared_ptr<CCanvasBuffer>& spCanvas, bool bColor, bool bColorRaster);
