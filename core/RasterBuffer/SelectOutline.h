// The outline of a mask.
#pragma once

#include "core/RasterBuffer/SelectBuffer.h"

/// Appends the pieces of the outline between pixels of at least half coverage and the others to an empty
/// list, each as long as possible without crossing a corner. Returns the bounding rectangle of the pixels
/// that are not 0, empty when there are none. The mask has blocks of DEFAULT_BLOCKSIZE.
CRect TraceOutline(const CAlphaBufferImpl<uint8_t>& mask, TOutlineList& lstOutline);
