// The functions that an operation on the whole picture applies to the content of every layer.
#pragma once

#include "core/RasterBuffer/AlphaBuffer.h"

#include <boost/function.hpp>

/// Pixels and paths change together. Both functions must be set.
struct TLayerChange {
    /// Fills `to`, an empty plane, from `from`, a plane of the same kind: pixels, masks and the selection.
    boost::function<void(CRasterBuffer& from, CRasterBuffer& to)> fnPlane;
    /// Maps a path's points, which are eighths of a pixel. Straight and without turning.
    boost::function<CPoint(CPoint)> fnPoint;
    double dWidth = 1; ///< factor of the paths' base widths and waves
};

/// Moves everything by whole pixels. Pixels that leave their plane are lost, paths keep their points.
TLayerChange ShiftChange(CPoint ptMove);

/// A mask after a change, of size `sz`: where a mask has no tile it restricts nothing, before and afterwards.
boost::shared_ptr<CAlphaBufferImpl<uint8_t>> ChangeMask(const CAlphaBufferImpl<uint8_t>& mask, CSize sz,
                                                        const TLayerChange& change);
