// A layer's picture: its content with its children over it, composed block by block and kept until stale.
#pragma once

#include "core/Platform/Tree.h"
#include "core/RasterBuffer/RasterBuffer.h"

#include <span>
#include <vector>

class CLayerBuffer;

/// By how much thumbnails shrink a canvas: the largest divisor of 96 that keeps both sides over 34, else 1.
int ThumbnailScale(CSize szCanvas);

/// Belongs to one layer. Children are painted from the first to the last; children of a layer that clips
/// (`IsClipping`) only where the layer itself has paint. A layer that passes its children through
/// (`IsPassThrough`) uses the flags alone. Points are any pixel of a block.
class CLayerPicture : boost::noncopyable {
public:
    explicit CLayerPicture(CLayerBuffer& layer) : m_layer(layer) {}

    /// New planes of the layer's size, in the kind that the canvas now has, every block stale. The opacity
    /// stays.
    void Create();
    /// Gives the tiles' memory back; every block is stale. Never throws.
    void Clear();
    /// The composed blocks. Its opacity is the layer's.
    const boost::shared_ptr<CRasterBuffer>& GetDrawBuffer() const { return m_pDrawBuffer; }
    /// The picture reduced by ThumbnailScale, as far as the draw buffer is up to date.
    const boost::shared_ptr<CRasterBuffer>& GetThumbnail();
    /// GetThumbnail on white.
    boost::shared_ptr<const TPicture> CopyThumbnail();
    /// True when the picture has changed since GetThumbnail was called.
    bool IsThumbnailStale() const { return m_pThumbnail->FindDirty().has_value(); }

    /// Prepares what layers here and below can only prepare for several blocks at once. Then UpdateBlock may
    /// be called for distinct ones of these blocks by distinct threads.
    void PrepareBlocks(std::span<const CPoint> blocks);
    /// Rebuilds the draw buffer's tile at `pt` if it is stale; where nothing paints there is no tile. A block
    /// that fails stays stale.
    void UpdateBlock(CPoint pt);
    /// Brings the tile at `dest`'s position up to date and, if the layer is visible, blends it into `dest`.
    void DrawBlock(CRasterBlockBuffer& dest);
    /// The picture in the kind of `dest`, a cleared tile, whatever kind draw buffers have: paints content and
    /// children, without this layer's opacity and also while it is hidden. The canvas's flags must have been
    /// gathered.
    void PaintPicture(CRasterBlockBuffer& dest);
    /// Paints what PaintPicture paints, with the layer's opacity, onto a tile.
    void PaintWithOpacity(CRasterBlockBuffer& dest);
    /// True when PaintPicture may paint something at the block of `pt`.
    bool HasPicture(CPoint pt);

    /// Gathers the flags of all layers below and of the layer's own content, children first: those that were
    /// set since the last time.
    void UpdateFlags();
    /// Flags every block as stale.
    void MarkAllDirty() { m_pDrawBuffer->GetDirty().Fill(true); }
    /// Flags the blocks in which the picture shows something or did when it was last composed.
    void MarkPicture() { AddPictureTo(m_pDrawBuffer->GetDirty()); }
    /// Adds these blocks to a matrix of the block grid. Stale blocks need not be among them: they are flagged
    /// already.
    void AddPictureTo(CBoolMatrix& matrix) const;
    /// The layer was shown or hidden: flags its picture and what a hidden layer kept to itself.
    void FlagVisibility();
    /// Flags what a child that comes into the list shows. Never throws.
    void FlagComing(CLayerPicture& child);
    /// Of new pictures, here and below, every flag is set: takes those away that stand for nothing. The
    /// others are passed on once more.
    void DropNeedlessFlags();

private:
    static CLayerPicture& PictureOf(const boost::shared_ptr<CLayerBuffer>& spLayer);
    // UpdateBlock for a layer whose parent is being updated.
    void RefreshBlock(CPoint pt);
    // True when DrawBlock would paint something at the block of `pt`, which is up to date.
    bool ShowsAt(CPoint pt) const;
    // PaintWithOpacity, if the layer is visible and paints something.
    void PaintOnto(CRasterBlockBuffer& dest);
    // True when the draw buffer holds what PaintPicture is to paint into a tile of that kind.
    bool IsCachedFor(const CRasterBlockBuffer& dest) const;
    // Lets children paint over the layer's own content in `dest`, clipped to it where the layer clips.
    template <class Paint>
    void PaintChildren(CRasterBlockBuffer& dest, Paint paint) const;

    CLayerBuffer& m_layer;
    boost::shared_ptr<CRasterBuffer> m_pDrawBuffer;
    boost::shared_ptr<CRasterBuffer> m_pThumbnail; ///< a flagged block is still to be reduced
    int m_nThumbScale = 1;
    bool m_bJustHidden = false; ///< the parent has not yet been told that this layer is gone
};
