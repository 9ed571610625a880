// Converts pen packets to pointer events in window units.
#pragma once

#include "core/Platform/Message.h"
#include "core/Platform/Pen.h"
#include "core/Tools/PenCurve.h"

#include <optional>

class ICanvasWindow;

/// A decoded packet.
struct TPenEvent {
    EMessage message = EMessage::MouseMove;
    CPoint pt;              ///< client position in 1 / scale of a pixel
    uint32_t uPressure = 0; ///< above the threshold and stretched by the curve, 0 to the range
    uint32_t uAltitude = 0;
    bool bLow = false; ///< the pen touches, but below the threshold
};

/// A frame's access to the tablet.
class CTablet {
public:
    /// `bMouseCoord`: takes positions from the system cursor, which follows the pen, in eighths of a pixel.
    CTablet(IPen& pen, bool bMouseCoord);

    /// Decodes a packet; nullopt when it belongs to another window. With `bCaptured` accepts every packet.
    std::optional<TPenEvent> Decode(const TPenPacket& packet, const ICanvasWindow& window, bool bCaptured);
    /// Reads all waiting packets, at most IPen::QUEUE_SIZE; returns how many.
    size_t Read(TPenPacket* pPackets) { return m_pen.GetPackets(pPackets, IPen::QUEUE_SIZE); }
    /// Stretches the pressures from now on.
    void SetCurve(const TPenCurve& curve) { m_curve = curve; }
    /// Switches the packets of all frames on or off.
    void Enable(bool bEnable) { m_pen.Enable(bEnable); }

    /// Units of a position to a pixel.
    int32_t GetCoordScale() const { return m_nCoordScale; }
    /// The maxima of pressure and altitude.
    uint32_t GetPressRange() const { return m_range.GetRange(); }
    uint32_t GetAltitudeMax() const { return m_nAltitudeMax; }

private:
    IPen& m_pen;
    CPressRange m_range;
    int32_t m_nUnits = 1; ///< of a packet's position to a pixel
    int32_t m_nCoordScale = 1;
    uint32_t m_nAltitudeMax = 1;
    TPenCurve m_curve;
};
