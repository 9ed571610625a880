// Bytes as the user sees them.
#pragma once

#include <cstdint>

/// The nearest percent of 0 to 255, and the nearest byte of 0 to 100: a percent that becomes a byte comes
/// back as it was.
constexpr int PercentOfByte(uint8_t by) { return (by * 100 + 127) / 255; }
constexpr uint8_t ByteOfPercent(int nPercent) { return static_cast<uint8_t>((nPercent * 255 + 50) / 100); }
