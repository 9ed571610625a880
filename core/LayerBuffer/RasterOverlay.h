// Content shown over a raster layer's pixels before it is merged into them.
#pragma once

#include "core/RasterBuffer/RasterBuffer.h"

/// A stroke in progress, floating pixels, a transform's preview. Blocks are told by their corners in the
/// layer's plane. CoversBlock, PaintInto and ClearFlag are called for distinct blocks by distinct threads.
class IRasterOverlay {
public:
    virtual ~IRasterOverlay() = default;
    /// True when the block may look different with the overlay than without.
    virtual bool CoversBlock(CPoint pt) const = 0;
    /// Paints what is shown at the tile's block over a copy of the layer's own pixels. Called for covered
    /// blocks alone.
    virtual void PaintInto(CRasterBlockBuffer& work) const = 0;
    /// Passes on the flags of the blocks whose picture has changed: those that were set since the last time.
    virtual void PassFlags(CBoolMatrix& matrix) = 0;
    /// The block has been shown.
    virtual void ClearFlag(CPoint pt) = 0;
};
