#include "session/seam/PacketParts.h"

#include "session/seam/InputNames.h"

#include <nlohmann/json.hpp>

namespace {

constexpr int64_t MAX_AXIS = 1 << 20;
constexpr int64_t MAX_TENTHS = 3600; ///< of a degree
constexpr int32_t UPRIGHT = 900;
constexpr uint32_t CURSOR_TIP = 1, CURSOR_ERASER = 2;

int32_t ReadNumber(const CScriptValue& value, const char* pszKey, int64_t nDefault, int64_t nMin,
                   int64_t nMax) {
    return static_cast<int32_t>(value.Has(pszKey) ? value.At(pszKey).Integer(nMin, nMax) : nDefault);
}

} // namespace

TPenPacket ReadPacketParts(const CScriptValue& value) {
    TPenPacket packet;
    const CPoint pt = ReadPosition(value);
    packet.x = pt.x;
    packet.y = pt.y;
    packet.uPressure = static_cast<uint32_t>(value.At("pressure").Integer(0, MAX_AXIS));
    packet.nAltitude = ReadNumber(value, "altitude", UPRIGHT, -MAX_AXIS, MAX_AXIS);
    packet.nAzimuth = ReadNumber(value, "azimuth", 0, 0, MAX_TENTHS);
    packet.nTwist = ReadNumber(value, "twist", 0, -MAX_TENTHS, MAX_TENTHS);
    packet.uCursor = ReadFlag(value, "eraser") ? CURSOR_ERASER : CURSOR_TIP;
    return packet;
}

nlohmann::json WritePacketParts(const TPenPacket& packet) {
    nlohmann::json parts{{"x", packet.x}, {"y", packet.y}, {"pressure", packet.uPressure}};
    if (packet.nAltitude != UPRIGHT) parts["altitude"] = packet.nAltitude;
    if (packet.nAzimuth != 0) parts["azimuth"] = packet.nAzimuth;
    if (packet.nTwist != 0) parts["twist"] = packet.nTwist;
    if (packet.uCursor == CURSOR_ERASER) parts["eraser"] = true;
    return parts;
}
