// The commands on a canvas's selection, each one undo step. Complete strokes are merged first.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

/// The active layer if it is a raster layer, else null.
boost::shared_ptr<CRasterLayerBuffer> ActiveRasterLayer(const CCanvasBuffer& canvas);

/// Selects the whole canvas. False when all is selected and nothing floats.
bool SelectAll(const boost::shared_ptr<CCanvasBuffer>& spCanvas);

/// Drops the selection, and merges what floats. False when there is neither.
bool Deselect(const boost::shared_ptr<CCanvasBuffer>& spCanvas);

/// True when the active layer is a raster layer with floating pixels, or one on a canvas with a selection.
bool CanClear(const CCanvasBuffer& canvas);

/// Clears what is selected on the active layer under the mask, or deletes its floating pixels with their
/// selection; what lies under those stays. The undo step has that label. False when nothing changes.
bool ClearSelected(const boost::shared_ptr<CCanvasBuffer>& spCanvas, const wchar_t* pszLabel);
