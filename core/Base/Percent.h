// Conversion between bytes and the percentages that the user sees.
#pragma once

#include <cstdint>

/// The nearest percent of 0 to 255, and the nearest byte of 0 to 100. Percent to byte and back returns the
/// same percent.
constexpr int PercentOfByte(uint8_t by) { return (by * 100 + 127) / 255; }
constexpr uint8_t ByteOfPercent(int nPercent) { return static_cast<uint8_t>((nPercent * 255 + 50) / 100); }
