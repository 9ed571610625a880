// The whole canvas in another size: pixels, masks and the selection are resampled, paths are scaled.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/RasterKernel/RescaleKernel.h"

/// The functions of such a change of size. Points go to the nearest eighth of a pixel, halves away from zero;
/// base widths and waves grow by the geometric mean of both axes' factors. A tile without anything visible is
/// not made.
TLayerChange RescaleChange(CSize szFrom, CSize szTo, ERescaleMode mode);

/// Resamples the canvas to 1 to MAX_CANVAS_SIDE pixels on each side, by an undoable action. False when it has
/// that size already. Raises cancelled_error, after which nothing has changed.
bool RescaleCanvas(const boost::shared_ptr<CCanvasBuffer>& spCanvas, CSize sz, ERescaleMode mode,
                   IProgress& progress = NoProgress());
