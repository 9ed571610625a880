// What a layer asks of the document that it belongs to.
#pragma once

#include "core/Base/Geometry.h"

class CHistoryStream;

class ILayerCanvas {
public:
    virtual ~ILayerCanvas() = default;
    /// Size in pixels.
    virtual CSize GetSize() const = 0;
    /// True when draw buffers are colour planes, false for grey ones.
    virtual bool IsColor() const = 0;
    /// True when raster layers' pixels are colour planes, false for grey ones.
    virtual bool IsColorRaster() const = 0;
    virtual CHistoryStream& GetHistory() = 0;
};
