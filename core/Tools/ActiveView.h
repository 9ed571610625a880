// The view that has the user's attention, as tools see it.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>

class IActiveView {
public:
    virtual ~IActiveView() = default;
    virtual const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const = 0;
    /// Magnification in 48ths: 48 is 100 percent.
    virtual uint16_t GetZoom() const = 0;
};

/// The active view; expired while there is none.
extern boost::weak_ptr<IActiveView> g_wpActiveView;
