// The coverage of a vector layer's paths, rasterized block by block.
#pragma once

#include "core/PathObject/PathObject.h"
#include "core/RasterBuffer/AlphaBuffer.h"

#include <list>

using TPathList = std::list<boost::shared_ptr<CPathObject>>;

/// The canvas pixels that coverage inside a box of path units reaches; empty for an empty box.
CRect CoveredPixels(const CRect& rcPath);

/// Rasterizes the block of `pt`, which is flagged, and flagged ones on its right and below it anew, and
/// clears their flags. Returns the rectangle of these blocks. After a failure coverage and flags are as they
/// were.
CRect UpdateCoverage(CAlphaBufferImpl<uint8_t>& coverage, CPoint pt, const TPathList& lstPaths,
                     CPathFill& fill);
