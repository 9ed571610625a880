// The animated dashes along the selection's outline.
#pragma once

#include "core/CanvasFrame/CanvasView.h"
#include "core/GDIBuffer/GDIBuffer.h"
#include "core/RasterBuffer/SelectBuffer.h"

#include <boost/weak_ptr.hpp>

#include <vector>

/// The cells of 64 by 64 client pixels that an outline crosses.
class COutlineCells {
public:
    static constexpr int32_t CELL = 64;

    explicit COutlineCells(CSize szClient = {});

    CSize GetClient() const { return m_szClient; }
    /// Sets the cells that a rectangle inside the client area touches.
    void Add(const CRect& rc);
    /// Sets the other's cells; of another client size they replace these.
    void Add(const COutlineCells& other);
    /// True when the rectangle touches a set cell.
    bool Touches(const CRect& rc) const;
    /// The set cells as disjoint rectangles, inside the client area: cells beside each other are one, and so
    /// are equal rows of them.
    std::vector<CRect> GetRects() const;

private:
    /// Calls `fn(index)` for the cells of a rectangle until it returns true.
    template <class Function>
    bool AnyUnder(const CRect& rc, Function fn) const;

    CSize m_szClient;
    CSize m_szCells;
    std::vector<bool> m_vSet; ///< by rows
};

/// The dashes of one view. A null selection has none.
class CSelectionDashes {
public:
    using TSelectPtr = boost::shared_ptr<CSelectBuffer>;

    /// True when the outline may cross a client rectangle.
    bool Crosses(const TSelectPtr& spSelect, const CCanvasView& view, const CRect& rc);
    /// Draws the outline into a copy of the window's pixels, only inside `rcClip` (client pixels): black, and
    /// white where (x + y - uTick / 100) / 5 is odd, so that dashes of 5 pixels move one step every 100
    /// milliseconds.
    void Draw(CGDIBuffer& target, const CRect& rcClip, const TSelectPtr& spSelect, const CCanvasView& view,
              uint32_t uTick);
    /// The client rectangles to be repainted for the next step: where the outline is, and where it was drawn
    /// since the last call.
    std::vector<CRect> TakeStale(const TSelectPtr& spSelect, const CCanvasView& view);

private:
    const COutlineCells& Locate(const TSelectPtr& spSelect, const CCanvasView& view);

    COutlineCells m_cells; ///< of the outline under the view that Locate last saw
    COutlineCells m_cellsDrawn;
    boost::weak_ptr<CSelectBuffer> m_wpSelect;
    TViewState m_state;
    CPoint m_ptOrigin;
};
