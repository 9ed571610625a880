// Undoable operations that put one flat raster layer in place of others.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"

/// Merges a layer onto the one directly below it, both children of `spParent`. The result has opacity 255 and
/// the lower layer's name, place and visibility. Pairs that canBeMergedWith refuses are a defect.
void MergeLayers(const TLayerPtr& spParent, const TLayerPtr& pBaseLayer, const TLayerPtr& pSuperimposeLayer);

/// Puts a raster layer with a layer's picture in its place among the children of `spParent`: opacity 255, the
/// layer's name and visibility. A layer that is not rasterizable is a defect.
void RasterizeLayer(const TLayerPtr& spParent, const TLayerPtr& pLayer);
