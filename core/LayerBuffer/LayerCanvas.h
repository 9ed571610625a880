// What a layer asks of the document that it belongs to.
#pragma once

#include "core/Base/Geometry.h"

class CHistoryStream;
class CSelectBuffer;

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
    /// The selection, null when nothing is selected.
    virtual const CSelectBuffer* GetSelect() const = 0;
    /// Gathers the flags of the whole tree, so that every layer can be brought up to date on its own.
    virtual void FlushCanvasUpdates() = 0;
};
