// The outline of a mask.
#pragma once

#include "core/RasterBuffer/SelectBuffer.h"

/// Appends the pieces of the outline between pixels of at least half coverage and the others, each as long as
/// it can be without crossing a corner, to an empty list. Returns the bounding rectangle of the pixels that
/// are not 0, empty when there are none. The mask has blocks of DEFAULT_BLOCKSIZE.
CRect TraceOutline(const CAlphaBufferImpl<uint8_t>& mask, TOutlineList& lstOutline);
