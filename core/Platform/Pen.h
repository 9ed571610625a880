// The pen tablet: its axes, and a packet queue that the window system fills.
#pragma once

#include "core/Base/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <string>

/// The range of a device's axis.
struct TPenAxis {
    int32_t nMin = 0;
    int32_t nMax = 0;
};

/// One packet of the pen.
struct TPenPacket {
    uint32_t uStatus = 0;
    uint32_t uCursor = 0;  ///< which end of the pen: 1 tip, 2 eraser
    uint32_t uButtons = 0; ///< low word: the button's number; high word: 2 pressed, 1 released
    int32_t x = 0;         ///< screen position in 1 / units of a device pixel
    int32_t y = 0;
    uint32_t uPressure = 0; ///< normal pressure on the device's axis
    int32_t nAzimuth = 0;   ///< tenths of a degree, clockwise from above
    int32_t nAltitude = 0;  ///< on the device's axis; negative for the inverted pen
    int32_t nTwist = 0;     ///< tenths of a degree
};

/// The device itself, for the user.
struct TPenDevice {
    std::wstring strName;   ///< empty while no pen is known
    std::wstring strSystem; ///< the window system that reports it
    bool bPressure = false;
    bool bTilt = false;
    bool bTwist = false;
};

class IPen {
public:
    /// Capacity of the packet queue; older packets are dropped.
    static constexpr size_t QUEUE_SIZE = 128;

    virtual ~IPen() = default;
    /// False without a tablet; only the mouse draws then.
    virtual bool IsPresent() = 0;
    /// The pen that was used last, or one that is connected.
    virtual TPenDevice GetDevice() = 0;
    virtual TPenAxis GetPressureAxis() = 0;
    virtual TPenAxis GetAltitudeAxis() = 0;
    /// Whether frames take positions from the system's cursor or from the tablet itself. The first call of a
    /// session decides; a pen may do the same in either case.
    virtual void SetMouseCoord(bool bMouseCoord) = 0;
    /// Packet position units per device pixel of the screen.
    virtual int32_t GetUnitsPerPixel() = 0;
    /// Removes up to `nMax` packets, the oldest first; returns their number.
    virtual size_t GetPackets(TPenPacket* pPackets, size_t nMax) = 0;
    /// Switches packets on or off, so that another window can receive them. Any number of frames may say the
    /// same again.
    virtual void Enable(bool bEnable) = 0;
};
