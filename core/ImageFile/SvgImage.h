// The pixels of a raster layer for an SVG file.
#pragma once

#include "core/LayerBuffer/LayerBuffer.h"
#include "core/Platform/Bitmap.h"

/// The part of a layer's own content that is written.
enum class ESvgPart {
    Content, ///< all of it
    Mask,    ///< in white: the form that children are clipped to
    Ground,  ///< without its transparency: the colours under clipped children
};

struct TSvgImage {
    CRect rc; ///< the pixels of the canvas that hold paint; empty for none
    TEncodedPicture png;
};

/// A part of the layer's own content. The canvas's flags must have been collected. Raises bad_alloc and
/// cancelled_error.
TSvgImage MakeSvgImage(CLayerBuffer& layer, ESvgPart part, IImageCodecs& codecs, IProgress& progress);
