// Planes by kind: colour or grey, and from one to the other.
#pragma once

#include "core/RasterBuffer/RasterBuffer.h"

/// An empty plane of that geometry, colour or grey.
boost::shared_ptr<CRasterBuffer> CreatePlane(bool bColor, CSize sz, CSize szBlock);

/// Stores the tile of the block at `pt`, where `src` has one, in `dest`, a plane of the other kind and the
/// same geometry.
void ConvertBlock(CRasterBuffer& dest, CRasterBuffer& src, CPoint pt);

/// The plane in the other kind, tile by tile and only where tiles exist: colour to grey by GreyOf, grey into
/// all three channels. A plane of the wanted kind is returned itself; a new one has
/// no flag set.
boost::shared_ptr<CRasterBuffer> ConvertPlane(const boost::shared_ptr<CRasterBuffer>& spPlane, bool bColor);
