// A canvas's selection: the mask of selected pixels, and the outline for display.
#pragma once

#include "core/RasterBuffer/AlphaBuffer.h"

#include <deque>

/// A piece of the outline between two pixel corners, horizontal or vertical.
struct TOutlineSegment {
    int32_t x1;
    int32_t y1;
    int32_t x2;
    int32_t y2;

    friend bool operator==(const TOutlineSegment&, const TOutlineSegment&) = default;
};

using TOutlineList = std::deque<TOutlineSegment>;

/// Ways to combine two selections: coverages s and d give the larger one, d * (255 - s) / 255, and the rest
/// of d when the part outside s is subtracted from it.
enum class ESelectMode { Add, Subtract, Intersect };

/// Replaced as a whole when the selection changes, never edited while a canvas holds it. Tiles may be
/// shared with other selections, and all fully selected blocks share one full tile, so a mask must only be
/// written through GetWritableBlock.
class CSelectBuffer : boost::noncopyable {
public:
    /// An empty selection.
    explicit CSelectBuffer(CSize szCanvas);
    /// The part on the canvas of a mask whose corner lies at `ptMask`; shares tiles where it can.
    CSelectBuffer(CSize szCanvas, CAlphaBufferImpl<uint8_t>& mask, CPoint ptMask);
    virtual ~CSelectBuffer() = default;

    /// Canvas-sized: 255 selected, 0 not; a missing tile counts as 0.
    CAlphaBufferImpl<uint8_t>& GetMask() { return *m_spMask; }
    const CAlphaBufferImpl<uint8_t>& GetMask() const { return *m_spMask; }
    /// The mask's tile at a block, null where nothing is selected. It may have another block's position.
    const CRasterBlockBuffer* GetMaskTile(CPoint pt) const { return m_spMask->FindBlock(pt); }

    /// The following functions change only the mask; UpdateOutline updates the rest.
    void SelectAll();
    /// Combines this selection with another of the same canvas size (else a defect), tile by tile. Tiles
    /// that become equal to the other's are shared with it.
    void Combine(ESelectMode mode, const CSelectBuffer& other);
    /// Moves the selection; the part outside the canvas is dropped.
    void Shift(CPoint ptMove);

    /// Computes outline and bounds from the mask: the outline separates pixels of at least half coverage
    /// from the others, the bounds contain every pixel that is not 0. Examines only tiles and their
    /// borders.
    void UpdateOutline();
    /// The outline of the last UpdateOutline, in pieces of maximum length.
    const TOutlineList& GetOutline() const { return m_lstOutline; }
    /// The selected pixels' bounding rectangle; all four members -1 when unknown or nothing is selected.
    const CRect& GetBound() const { return m_rcBound; }
    CSize GetCanvasSize() const { return m_szCanvas; }
    /// Memory of the mask and the outline, without tiles that are shared with `pBeside`, if any.
    size_t GetBytes(const CSelectBuffer* pBeside) const;

private:
    using TMask = CAlphaBufferImpl<uint8_t>;
    using TTilePtr = boost::shared_ptr<CAlphaBlock8>;

    /// Stores a block's new tile: null where nothing is selected, the full tile where everything is.
    void Store(CPoint pt, const TTilePtr& spTile);

    boost::shared_ptr<TMask> m_spMask;
    TOutlineList m_lstOutline;
    CRect m_rcBound{-1, -1, -1, -1};
    CSize m_szCanvas;
};

/// Erases a plane's pixels under a selection of the same size, tile by tile: the new alpha is alpha * (255
/// - mask) / 255. Tiles of fully selected blocks are removed.
void ClearUnder(CRasterBuffer& plane, const CSelectBuffer& select);

/// The tile that all fully selected blocks share.
const boost::shared_ptr<CAlphaBlock8>& FullSelectTile();
