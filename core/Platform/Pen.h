// The pen tablet: its axes, and packets in a queue that the window system fills.
#pragma once

#include "core/Base/Geometry.h"

#include <cstddef>
#include <cstdint>

/// The range of a device's axis.
struct TPenAxis {
    int32_t nMin = 0;
    int32_t nMax = 0;
};

/// One report of the pen.
struct TPenPacket {
    uint32_t uStatus = 0;
    uint32_t uCursor = 0;  ///< which end of the pen: 1 tip, 2 eraser
    uint32_t uButtons = 0; ///< low word the button's number, high word 2 when it went down, 1 when it went up
    int32_t x = 0;         ///< screen position in 1 / units of a device pixel
    int32_t y = 0;
    uint32_t uPressure = 0; ///< normal pressure on the device's axis
    int32_t nAzimuth = 0;   ///< tenths of a degree, clockwise from above
    int32_t nAltitude = 0;  ///< on the device's axis; negative for the inverted pen
    int32_t nTwist = 0;     ///< tenths of a degree
};

class IPen {
public:
    /// Packets that the queue holds; older ones are lost.
    static constexpr size_t QUEUE_SIZE = 128;

    virtual ~IPen() = default;
    /// False when there is no tablet to be asked: the mouse alone draws then.
    virtual bool IsPresent() = 0;
    virtual TPenAxis GetPressureAxis() = 0;
    virtual TPenAxis GetAltitudeAxis() = 0;
    /// Units of a packet's position to a device pixel of the screen.
    virtual int32_t GetUnitsPerPixel() = 0;
    /// Takes up to `nMax` packets, the oldest first; returns how many.
    virtual size_t GetPackets(TPenPacket* pPackets, size_t nMax) = 0;
    /// Switches packets on or off, so that another window can have them.
    virtual void Enable(bool bEnable) = 0;
};
