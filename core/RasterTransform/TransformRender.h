// Resamples a source under a mapping, block by block; the result does not depend on which blocks are asked
// for, nor on which thread.
//
// A pixel is sampled at its centre by a filter of 6 by 6 pixels that passes through the picture's own values.
// If the picture shrinks, pixels are sampled at several positions across and down, about one for each of
// the source's, and reduced by a filter that reaches over four pixels, so that detail which pixels cannot
// show averages out. The numbers across and down differ where the picture shrinks in one direction. Colours
// are weighted by alpha. At the edges, the source goes on as it ends and the part of the pixel that the
// quadrilateral covers weakens its alpha.
#pragma once

#include "core/RasterTransform/TransformMap.h"
#include "core/RasterTransform/TransformSource.h"

/// Paints what shows at the tile's position inside `rcLimit` into a tile of the source's kind, all 0 before.
/// Returns false when that is nothing.
bool RenderTransform(const TTransformSource& source, const CTransformMap& map, const CRect& rcLimit,
                     CRasterBlockBuffer& tile);
