// Planes of tiles in another size.
#pragma once

#include "core/RasterBuffer/RasterBuffer.h"
#include "core/RasterKernel/RescaleKernel.h"

/// Resamples a rectangle of a plane of the map's first size. `apTo` has one plane for each of the plane's
/// channels, alpha the last; pixel (rcTo.left + x, rcTo.top + y) stands at y * nToStride + x. All of them are
/// 0, as they stay where nothing is read but missing tiles. Several threads may call it at once. False when
/// the plane has no tile there.
bool RescaleRect(CRasterBuffer& from, const CRescaleMap& map, const CRect& rcTo, uint8_t* const* apTo,
                 ptrdiff_t nToStride);
