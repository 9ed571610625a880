// Layers become one flat raster layer; undoable operations that replace them by it.
#pragma once

#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/Platform/Progress.h"

/// A new raster layer, in no tree yet, with a layer's picture and, if given, a second one's above it, their
/// opacities baked in; it has the first one's name and visibility. Raises cancelled_error.
boost::shared_ptr<CRasterLayerBuffer> BakeLayers(CLayerBuffer& layer, CLayerBuffer* pUpper = nullptr,
                                                 IProgress& progress = NoProgress());

/// Merges a layer onto the one directly below it, both children of `spParent`. The result has opacity 255
/// and the lower layer's name, place and visibility. A pair that canBeMergedWith rejects is a defect.
/// Raises cancelled_error before anything has changed.
void MergeLayers(const TLayerPtr& spParent, const TLayerPtr& pBaseLayer, const TLayerPtr& pSuperimposeLayer,
                 IProgress& progress = NoProgress());

/// Replaces a child of `spParent` by a raster layer with its picture: opacity 255, the layer's name and
/// visibility. A layer that cannot be rasterized is a defect. Raises cancelled_error before anything has
/// changed.
void RasterizeLayer(const TLayerPtr& spParent, const TLayerPtr& pLayer, IProgress& progress = NoProgress());
