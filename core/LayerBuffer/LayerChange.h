// The functions that an operation on the whole picture applies to the content of every layer.
#pragma once

#include "core/Platform/Progress.h"
#include "core/RasterBuffer/AlphaBuffer.h"

#include <boost/function.hpp>

/// Pixels and paths change together. Both functions must be set.
struct TLayerChange {
    /// Fills the block at `pt` of `to`, an empty plane, from `from`, a plane of the same kind: pixels, masks
    /// and the selection. Distinct blocks are filled by distinct threads, so flags must stay as they are
    /// (`ShareBlock`).
    boost::function<void(CRasterBuffer& from, CRasterBuffer& to, CPoint pt)> fnBlock;
    /// Maps a path's points, which are eighths of a pixel. Straight and without turning.
    boost::function<CPoint(CPoint)> fnPoint;
    double dWidth = 1; ///< factor of the paths' base widths and waves
};

/// Moves everything by whole pixels. Pixels that leave their plane are lost, paths keep their points.
TLayerChange ShiftChange(CPoint ptMove);

/// Stores a tile that only this plane holds, at the block of its position; from any thread.
void StoreNew(CRasterBuffer& plane, const boost::shared_ptr<CRasterBlockBuffer>& spTile);

/// Steps of progress that a plane of size `sz` takes.
uint64_t CountChangeSteps(CSize sz);
/// Fills `to` by several threads, a row of blocks in each step. Raises cancelled_error.
void ChangePlane(CRasterBuffer& from, CRasterBuffer& to, const TLayerChange& change, IProgress& progress);
/// A mask after a change, of size `sz`: where a mask has no tile it restricts nothing, before and afterwards.
boost::shared_ptr<CAlphaBufferImpl<uint8_t>> ChangeMask(const CAlphaBufferImpl<uint8_t>& mask, CSize sz,
                                                        const TLayerChange& change, IProgress& progress);
