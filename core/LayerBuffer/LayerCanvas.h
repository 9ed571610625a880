// Interface of the document for its layers.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

class CHistoryStream;
class CLayerBuffer;
class CSelectBuffer;
struct TFloatState;

class ILayerCanvas {
public:
    virtual ~ILayerCanvas() = default;
    /// Size in pixels.
    virtual CSize GetSize() const = 0;
    /// True when draw buffers are colour planes, false for grey ones.
    virtual bool IsColor() const = 0;
    /// True when raster layers' pixels are colour planes, false for grey ones.
    virtual bool IsColorRaster() const = 0;
    /// True when exported pictures are in colour, whatever the screen shows.
    bool IsColorPicture() const { return IsColor() || IsColorRaster(); }
    virtual CHistoryStream& GetHistory() = 0;
    /// The hidden root of the layer tree.
    virtual CLayerBuffer& GetRoot() const = 0;
    /// The selection, null when nothing is selected; it is replaced, never edited, so a kept pointer keeps
    /// the old selection.
    virtual const boost::shared_ptr<CSelectBuffer>& GetSelect() const = 0;
    /// The pixels that float above one of the raster layers, and the selection, which is the float's mask
    /// where it lies.
    virtual TFloatState GetFloatState() const = 0;
    /// Replaces both. Never throws.
    virtual void SetFloatState(const TFloatState& state) = 0;
    /// Returns the number of a complete stroke: strokes are merged in the order of their numbers, on all
    /// layers.
    virtual uint64_t TakeStrokeNumber() = 0;
    /// Propagates the flags of the whole tree, so that every layer can be updated on its own.
    virtual void FlushCanvasUpdates() = 0;
    /// The layer that commands and tools work on: the current child of the current child, from the root down;
    /// null for none.
    virtual boost::shared_ptr<CLayerBuffer> GetActiveLayer() const = 0;
    /// Makes a layer of the tree the active one; null leaves none active.
    virtual void SelectLayer(const boost::shared_ptr<CLayerBuffer>& spLayer) = 0;
};
