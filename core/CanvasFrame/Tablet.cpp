#include "core/CanvasFrame/Tablet.h"

#include "core/Platform/Window.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int32_t CURSOR_UNITS = 8; ///< units of the system cursor's position per pixel

// The screen pixel of a position; rounds down also left of the primary screen.
int32_t PixelOf(int64_t n, int32_t nScale) {
    return static_cast<int32_t>(n >= 0 ? n / nScale : -((-n + nScale - 1) / nScale));
}

EMessage MessageOf(uint32_t uButtons) {
    const uint32_t uButton = uButtons & 0xFFFF;
    const uint32_t uState = uButtons >> 16;
    if (uButton == 0 && uState == 2) return EMessage::LButtonDown;
    if (uButton == 0 && uState == 1) return EMessage::LButtonUp;
    if (uButton == 1 && uState == 2) return EMessage::RButtonDown;
    if (uButton == 1 && uState == 1) return EMessage::RButtonUp;
    return EMessage::MouseMove;
}

} // namespace

CTablet::CTablet(IPen& pen, bool bMouseCoord) : m_pen(pen), m_range(pen.GetPressureAxis()) {
    m_nAltitudeMax = static_cast<uint32_t>(std::max(1, pen.GetAltitudeAxis().nMax));
    m_nUnits = std::max(1, pen.GetUnitsPerPixel());
    m_nCoordScale = bMouseCoord ? std::min(m_nUnits, CURSOR_UNITS) : m_nUnits;
}

std::optional<TPenEvent> CTablet::Decode(const TPenPacket& packet, const ICanvasWindow& window,
                                         bool bCaptured) {
    // The system cursor follows the pen: use its pixel at the time of this packet.
    const CPoint ptPixel{PixelOf(packet.x, m_nUnits), PixelOf(packet.y, m_nUnits)};
    const CPoint pt{PixelOf(int64_t{packet.x} * m_nCoordScale, m_nUnits),
                    PixelOf(int64_t{packet.y} * m_nCoordScale, m_nUnits)};
    if (!bCaptured && !window.IsAt(ptPixel)) return std::nullopt;
    const CPoint ptOrigin = window.GetClientOrigin();
    TPenEvent event;
    event.message = MessageOf(packet.uButtons);
    event.pt = {pt.x - ptOrigin.x * m_nCoordScale, pt.y - ptOrigin.y * m_nCoordScale};
    event.bLow = m_range.IsLow(packet.uPressure);
    event.uPressure = m_curve.Apply(m_range.Above(packet.uPressure), m_range.GetRange());
    event.uAltitude = static_cast<uint32_t>(std::abs(packet.nAltitude));
    return event;
}
