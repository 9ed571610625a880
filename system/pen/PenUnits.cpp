#include "system/pen/PenUnits.h"

#include <algorithm>
#include <cstdlib>

namespace {

int64_t FloorDivide(int64_t n, int64_t nBy) { return n >= 0 ? n / nBy : -((-n + nBy - 1) / nBy); }

// Rounds down, so that no light pressure comes to lie above the threshold.
uint32_t ConvertPressure(uint32_t uPressure, const TPenAxis& from, const TPenAxis& to) {
    const int64_t nFrom = int64_t{from.nMax} - from.nMin, nTo = int64_t{to.nMax} - to.nMin;
    const int64_t n = std::clamp<int64_t>(static_cast<int32_t>(uPressure) - int64_t{from.nMin}, 0, nFrom);
    const int64_t nScaled = nFrom > 0 ? n * nTo / nFrom : 0;
    return static_cast<uint32_t>(to.nMin + (n > 0 ? std::max<int64_t>(nScaled, 1) : 0));
}

int32_t ConvertAltitude(int32_t nAltitude, const TPenAxis& from, const TPenAxis& to) {
    if (from.nMax <= 0) return to.nMax;
    const int64_t n = std::clamp<int64_t>(nAltitude, -int64_t{from.nMax}, from.nMax);
    return static_cast<int32_t>(n * to.nMax / from.nMax);
}

} // namespace

TPenPacket ConvertPacket(const TPenPacket& packet, const TPenUnits& from, const TPenUnits& to,
                         CPoint ptShift) {
    const auto place = [&](int32_t n, int32_t nShift) {
        const int64_t nTwice = 2 * (n + int64_t{nShift} * from.nPerPixel) + 1;
        return static_cast<int32_t>(FloorDivide(nTwice * to.nPerPixel, 2 * int64_t{from.nPerPixel}));
    };
    TPenPacket result = packet;
    result.x = place(packet.x, ptShift.x);
    result.y = place(packet.y, ptShift.y);
    result.uPressure = ConvertPressure(packet.uPressure, from.pressure, to.pressure);
    result.nAltitude = ConvertAltitude(packet.nAltitude, from.altitude, to.altitude);
    return result;
}

CPoint PixelOf(const TPenPacket& packet, const TPenUnits& units) {
    return {static_cast<int32_t>(FloorDivide(packet.x, units.nPerPixel)),
            static_cast<int32_t>(FloorDivide(packet.y, units.nPerPixel))};
}
