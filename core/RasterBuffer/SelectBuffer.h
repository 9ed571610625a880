// A canvas's selection: which pixels are selected, and the outline that the user sees.
#pragma once

#include "core/RasterBuffer/AlphaBuffer.h"

#include <list>

/// A piece of the outline between two pixel corners, horizontal or vertical.
struct TOutlineSegment {
    int32_t x1;
    int32_t y1;
    int32_t x2;
    int32_t y2;

    friend bool operator==(const TOutlineSegment&, const TOutlineSegment&) = default;
};

/// Replaced as a whole when the selection changes, never edited while a canvas holds it.
class CSelectBuffer : boost::noncopyable {
public:
    /// Nothing selected.
    explicit CSelectBuffer(CSize szCanvas);
    virtual ~CSelectBuffer() = default;

    /// Canvas-sized: 255 selected, 0 not; a missing tile selects nothing.
    CAlphaBufferImpl<uint8_t>& GetMask() { return *m_spMask; }
    const CAlphaBufferImpl<uint8_t>& GetMask() const { return *m_spMask; }
    /// The mask's tile at a block, null where nothing is selected.
    const CRasterBlockBuffer* GetMaskTile(CPoint pt) const { return m_spMask->FindBlock(pt); }
    /// Takes outline and bounds from the mask: the outline runs between pixels of at least half coverage and
    /// the others, the bounds hold every pixel that is not 0.
    void UpdateOutline();
    /// The outline since the last UpdateOutline, as runs as long as can be.
    const std::list<TOutlineSegment>& GetOutline() const { return m_lstOutline; }
    /// The selected pixels' bounding rectangle; all four members -1 when unknown or nothing is selected.
    const CRect& GetBound() const { return m_rcBound; }
    CSize GetCanvasSize() const { return m_szCanvas; }

private:
    boost::shared_ptr<CAlphaBufferImpl<uint8_t>> m_spMask;
    std::list<TOutlineSegment> m_lstOutline;
    CRect m_rcBound{-1, -1, -1, -1};
    CSize m_szCanvas;
};
