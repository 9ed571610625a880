// What a vector layer knows of the paths that it holds.
#pragma once

#include "core/RasterBuffer/AlphaBlockBuffer.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

class CPathObject : boost::noncopyable {
public:
    virtual ~CPathObject() = default;
    /// The canvas pixels that the path can touch.
    virtual CRect RectIncludingPath() const = 0;
    /// Adds the path's coverage to a tile of a canvas-sized plane; coverage is never lowered.
    virtual void RasterizePath(CAlphaBlock8& tile) const = 0;
    virtual CSerializer Serialize() const = 0;
    /// Reads the path's chunk; raises deserialize_error.
    virtual void Deserialize(CDeserializer& reader) = 0;
};
