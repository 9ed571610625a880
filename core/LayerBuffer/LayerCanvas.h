// What a layer asks of the document that it belongs to.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

class CHistoryStream;
class CLayerBuffer;
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
    /// True when the picture for use outside is in colour, whatever the screen shows.
    bool IsColorPicture() const { return IsColor() || IsColorRaster(); }
    virtual CHistoryStream& GetHistory() = 0;
    /// The hidden root of the layer tree.
    virtual CLayerBuffer& GetRoot() const = 0;
    /// The selection, null when nothing is selected; replaced, never edited, so whoever keeps it keeps what
    /// was selected.
    virtual const boost::shared_ptr<CSelectBuffer>& GetSelect() const = 0;
    /// A number for a stroke that is complete: strokes are merged in the order of their numbers, on whatever
    /// layers they are.
    virtual uint64_t TakeStrokeNumber() = 0;
    /// Gathers the flags of the whole tree, so that every layer can be brought up to date on its own.
    virtual void FlushCanvasUpdates() = 0;
    /// The layer that commands and tools work on: the current child of the current child, from the root down;
    /// null for none.
    virtual boost::shared_ptr<CLayerBuffer> GetActiveLayer() const = 0;
    /// Makes a layer of the tree the active one; null leaves none active.
    virtual void SelectLayer(const boost::shared_ptr<CLayerBuffer>& spLayer) = 0;
};
