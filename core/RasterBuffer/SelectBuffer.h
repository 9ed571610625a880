// A canvas's selection: which pixels are selected, and the outline that the user sees.
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

/// How a selection changes another one: coverages s and d give s + d * (255 - s) / 255, d * (255 - s) / 255,
/// and what is left of d when it is subtracted from itself outside s.
enum class ESelectMode { Add, Subtract, Intersect };

/// Replaced as a whole when the selection changes, never edited while a canvas holds it. Tiles may be shared
/// with other selections, and one full tile stands for every block that is selected as a whole, so a mask is
/// written through GetWritableBlock only.
class CSelectBuffer : boost::noncopyable {
public:
    /// Nothing selected.
    explicit CSelectBuffer(CSize szCanvas);
    virtual ~CSelectBuffer() = default;

    /// Canvas-sized: 255 selected, 0 not; a missing tile selects nothing.
    CAlphaBufferImpl<uint8_t>& GetMask() { return *m_spMask; }
    const CAlphaBufferImpl<uint8_t>& GetMask() const { return *m_spMask; }
    /// The mask's tile at a block, null where nothing is selected. Its position may be another block's.
    const CRasterBlockBuffer* GetMaskTile(CPoint pt) const { return m_spMask->FindBlock(pt); }

    /// The following change the mask alone; UpdateOutline brings the rest up to date.
    void SelectAll();
    /// Changes this selection by another one of the same canvas size, tile by tile; any other is a defect.
    /// Tiles that come out as the other's are shared with it.
    void Combine(ESelectMode mode, const CSelectBuffer& other);
    /// Moves the selection; what leaves the canvas is lost.
    void Shift(CPoint ptMove);

    /// Takes outline and bounds from the mask: the outline runs between pixels of at least half coverage and
    /// the others, the bounds hold every pixel that is not 0. Looks only at tiles and at their borders.
    void UpdateOutline();
    /// The outline since the last UpdateOutline, as runs as long as can be.
    const TOutlineList& GetOutline() const { return m_lstOutline; }
    /// The selected pixels' bounding rectangle; all four members -1 when unknown or nothing is selected.
    const CRect& GetBound() const { return m_rcBound; }
    CSize GetCanvasSize() const { return m_szCanvas; }
    /// Memory of the mask and of the outline that `pBeside`, if any, does not share.
    size_t GetBytes(const CSelectBuffer* pBeside) const;

private:
    using TMask = CAlphaBufferImpl<uint8_t>;
    using TTilePtr = boost::shared_ptr<CAlphaBlock8>;

    /// Stores a block's new tile: none where nothing is selected, the full one where everything is.
    void Store(CPoint pt, const TTilePtr& spTile);

    boost::shared_ptr<TMask> m_spMask;
    TOutlineList m_lstOutline;
    CRect m_rcBound{-1, -1, -1, -1};
    CSize m_szCanvas;
};

/// Erases a plane's pixels under a selection of the same size, tile by tile: the alpha that is left is
/// alpha * (255 - mask) / 255. Blocks that are selected as a whole lose their tile.
void ClearUnder(CRasterBuffer& plane, const CSelectBuffer& select);

/// The tile that stands for every block that is selected as a whole.
const boost::shared_ptr<CAlphaBlock8>& FullSelectTile();
