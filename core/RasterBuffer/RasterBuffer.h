// The abstract plane: a fixed grid of lazily created tiles.
#pragma once

#include "core/Platform/Progress.h"
#include "core/RasterBuffer/BoolMatrix.h"
#include "core/RasterBuffer/RasterBlockBuffer.h"

#include <optional>

struct TViewState;

/// A plane. Its geometry never changes after Create. Positions must lie inside the block grid: callers that
/// may be outside clip first. Not locked: one thread, or parallel loops over distinct tiles.
class CRasterBuffer : boost::noncopyable {
public:
    virtual ~CRasterBuffer() = default;

    /// A new empty plane of the same kind.
    virtual boost::shared_ptr<CRasterBuffer> CreateSized(CSize szBuffer, CSize szBlock) const = 0;
    /// Reads the plane's chunk; raises deserialize_error. All dirty flags are 0 afterwards.
    virtual void Deserialize(CDeserializer& reader) = 0;
    /// Reads the tile of the block that holds pixel `pt` if Deserialize left it in the image, through another
    /// image of the same bytes; raises deserialize_error. The flag stays as it is. Several threads may load
    /// distinct blocks, each through an image of its own.
    virtual void LoadBlock(CPoint pt, const boost::shared_ptr<CWireImage>& spImage) = 0;
    /// Sets the geometry (both sizes positive) and empties the plane.
    virtual void Create(CSize szBuffer, CSize szBlock) = 0;
    /// The tile that holds pixel `pt`. A missing one is empty, or made when `bCreate`; making it does not set
    /// the dirty flag.
    virtual boost::shared_ptr<CRasterBlockBuffer> GetBlock(CPoint pt, bool bCreate) = 0;
    /// The tile that holds pixel `pt`, to be written: made where there is none, replaced by its clone where
    /// anyone else holds it too. Sets the dirty flag. Every writer of a plane that exists takes its tiles
    /// here, and takes them again when the plane may have been copied since.
    virtual boost::shared_ptr<CRasterBlockBuffer> GetWritableBlock(CPoint pt) = 0;
    /// Drops every tile, last block first; dirty flags stay as they are.
    virtual void Clear() = 0;
    /// Exchanges the tiles of two planes of the same kind and geometry; all dirty flags of both become 1. A
    /// tile that both have at a block keeps its owner.
    virtual void Swap(CRasterBuffer& plane) = 0;
    /// A new plane that shares this one's tiles, which keep this plane as their owner. Opacity is the
    /// default.
    virtual boost::shared_ptr<CRasterBuffer> ShallowCopy() = 0;
    /// A new plane with a clone of each tile. Opacity is the default.
    virtual boost::shared_ptr<CRasterBuffer> DeepCopy() const = 0;
    /// Stores a tile, which this plane then owns; one of another kind empties the block. Sets the dirty flag.
    /// Returns the old tile.
    virtual boost::shared_ptr<CRasterBlockBuffer>
    SetBlock(CPoint pt, const boost::shared_ptr<CRasterBlockBuffer>& spBlock) = 0;
    /// Stores a tile of this plane's kind that another plane, or another block, goes on to use; its owner and
    /// position stay as they are. The flag stays too.
    virtual void ShareBlock(CPoint pt, const boost::shared_ptr<CRasterBlockBuffer>& spBlock) = 0;
    /// A zeroed tile at the block of `pt`, to be painted: the old one when nobody shares it, else a new one.
    virtual boost::shared_ptr<CRasterBlockBuffer> RenewBlock(CPoint pt) = 0;
    /// Draws all blocks that the target can show and that are not stale. `ptOrigin` is where the canvas's
    /// corner lies in the target.
    virtual void DrawToScreen(CGDIBuffer& target, CPoint ptOrigin, const TViewState& view) = 0;
    /// Draws the block that holds pixel `pt`, a missing tile as white paper.
    virtual void DrawBlockToScreen(CGDIBuffer& target, const CScreenMap& map, CPoint pt) const = 0;
    /// Composites this plane's tile at `dest`'s position onto `dest`; nothing where there is none.
    virtual void BlendBlockInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const = 0;
    /// Fills every block of the grid from a bitmap, creating tiles; flags stay as they are. A step of
    /// `progress` for each block; so in WriteBitmap.
    virtual void ReadBitmap(CBitmapSession& session, IProgress& progress = NoProgress()) = 0;
    /// Writes every block of the grid, missing ones as transparent.
    virtual void WriteBitmap(CBitmapSession& session, IProgress& progress = NoProgress()) = 0;
    /// Blocks of the grid.
    size_t GetBlockCount() const { return m_spDirty->GetCount(); }
    /// Opacity of the whole plane, 0 to 255.
    virtual void SetOpacity(uint8_t uOpacity) = 0;
    virtual uint8_t GetOpacity() const = 0;
    /// Memory of the tiles that `pBeside`, a plane of the same grid, does not have at the same blocks; of all
    /// tiles for null.
    virtual size_t GetBytes(const CRasterBuffer* pBeside) const = 0;
    virtual CSerializer Serialize() const = 0;
    /// One new tile of the size and position of `rc`, which must not be empty, filled from the plane's pixels
    /// under it and 0 beyond the plane. With `bCut` they leave the plane: each tile touched is written.
    virtual boost::shared_ptr<CRasterBlockBuffer> ExtractBlock(const CRect& rc, bool bCut,
                                                               const CRasterBlockBuffer* pMask) = 0;
    /// Pastes a tile of the same kind at `pt`; what overhangs the plane is cut off.
    virtual void PasteBlock(const CRasterBlockBuffer& src, CPoint pt) = 0;
    /// A new tile of full block size at `pt` (a block's corner), owned by this plane.
    virtual boost::shared_ptr<CRasterBlockBuffer> CreateBlock(CPoint pt) = 0;
    /// An empty plane of this plane's kind and geometry; opacity is the default.
    virtual boost::shared_ptr<CRasterBuffer> CreateLike() const = 0;

    /// Size in pixels.
    CSize GetSize() const { return m_szSize; }
    CRect GetRect() const { return CRect({0, 0}, m_szSize); }
    /// Blocks across and down.
    CSize GetBufferSize() const { return m_szBlocks; }
    CSize GetBlockSize() const { return m_szBlock; }
    /// True when both planes can be worked on block by block.
    bool IsCompatible(const CRasterBuffer& plane) const {
        return m_szBlocks == plane.m_szBlocks && m_szBlock == plane.m_szBlock;
    }
    /// Top-left pixel of a block by column and row.
    CPoint BlockCorner(int32_t nColumn, int32_t nRow) const {
        return {nColumn * m_szBlock.cx, nRow * m_szBlock.cy};
    }
    /// One flag a block: the tile changed and whatever is derived from it is stale.
    CBoolMatrix& GetDirty() { return *m_spDirty; }
    const CBoolMatrix& GetDirty() const { return *m_spDirty; }
    /// True when there is a tile at pixel `pt`; false beyond the grid too.
    virtual bool HasBlock(CPoint pt) const = 0;
    /// Adds the flags of the blocks that have tiles to a matrix of the grid's size.
    virtual void AddTilesTo(CBoolMatrix& matrix) const = 0;
    /// The flag of the block that holds pixel `pt`; unchecked.
    uint8_t DirtyAt(CPoint pt) const { return m_spDirty->At(pt.x / m_szBlock.cx, pt.y / m_szBlock.cy); }
    /// The corner of the first block whose flag is set; nullopt for none.
    std::optional<CPoint> FindDirty() const {
        const size_t i = m_spDirty->FindSet();
        if (i == m_spDirty->GetCount()) return std::nullopt;
        const auto nColumns = static_cast<size_t>(m_szBlocks.cx);
        return BlockCorner(static_cast<int32_t>(i % nColumns), static_cast<int32_t>(i / nColumns));
    }
    void SetDirty(CPoint pt) { m_spDirty->Set(pt.x / m_szBlock.cx, pt.y / m_szBlock.cy); }
    void ClearDirty(CPoint pt) { m_spDirty->Clear(pt.x / m_szBlock.cx, pt.y / m_szBlock.cy); }
    /// Sets the flags of the blocks that a rectangle touches; what lies beyond the plane is cut off.
    void MarkDirty(const CRect& rc) {
        ForEachBlockIn(rc, [&](CPoint pt) { SetDirty(pt); });
    }
    /// The tile that holds pixel `pt`, or a zeroed one in its place that the plane does not keep.
    boost::shared_ptr<CRasterBlockBuffer> GetBlockOrBlank(CPoint pt) {
        const auto spTile = GetBlock(pt, false);
        return spTile ? spTile : CreateBlock({pt.x - pt.x % m_szBlock.cx, pt.y - pt.y % m_szBlock.cy});
    }

    /// Calls `fn(CPoint corner)` for every block of the grid, row by row.
    template <class Function>
    void ForEachBlock(Function fn) const {
        for (int32_t y = 0; y < m_szBlocks.cy; ++y)
            for (int32_t x = 0; x < m_szBlocks.cx; ++x) fn(BlockCorner(x, y));
    }
    /// The same for the blocks that a rectangle touches, clipped to the plane.
    template <class Function>
    void ForEachBlockIn(const CRect& rc, Function fn) const {
        const CRect rcIn = rc.Intersect(GetRect());
        if (rcIn.IsEmpty()) return;
        for (int32_t y = rcIn.top / m_szBlock.cy; y <= (rcIn.bottom - 1) / m_szBlock.cy; ++y)
            for (int32_t x = rcIn.left / m_szBlock.cx; x <= (rcIn.right - 1) / m_szBlock.cx; ++x)
                fn(BlockCorner(x, y));
    }

protected:
    boost::shared_ptr<CBoolMatrix> m_spDirty;
    CSize m_szBlock;
    CSize m_szBlocks;
    CSize m_szSize;
};
