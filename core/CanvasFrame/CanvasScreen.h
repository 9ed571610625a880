// A view's screen copy: only blocks that changed and can be seen are composed and drawn.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasFrame/CanvasView.h"
#include "core/GDIBuffer/GDIBuffer.h"

#include <memory>
#include <optional>
#include <vector>

class CCanvasScreen {
public:
    /// Brings the copy up to date with the canvas under the view. Returns the target rectangles that changed:
    /// one for the blocks beside each other in a row of blocks, or one for all.
    std::vector<CRect> Refresh(CCanvasBuffer& canvas, const CCanvasView& view);
    /// The copy, null before the first Refresh or when the client area is empty.
    CGDIBuffer* GetBuffer() const { return m_pBuffer.get(); }

private:
    /// Moves what the copy holds to where the view now has it, and flags the blocks that come into sight.
    void Scroll(const CScreenMap& map, CPoint ptOrigin);
    /// Flags the blocks that a target rectangle shows.
    void MarkDirty(const CScreenMap& map, const CRect& rcTarget);
    /// Takes the canvas's size and counters over and flags the blocks that moved on.
    void NoteChanges(const CCanvasBuffer& canvas);

    std::unique_ptr<CGDIBuffer> m_pBuffer;
    std::unique_ptr<CBoolMatrix> m_spDirty;        ///< per block: the screen copy is out of date
    std::optional<UpdateCounterMatrix> m_counters; ///< what this view last saw
    CSize m_szCanvas;                              ///< the canvas's size then
    CPoint m_ptOrigin;                             ///< where the copy has the canvas
    TViewState m_state;                            ///< how the copy shows it
};
