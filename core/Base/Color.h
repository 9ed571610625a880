// Colours as one 32-bit value, 0x00BBGGRR, and the one grey formula of the system.
#pragma once

#include <cstdint>

/// A colour as one value: red in the low byte, then green, then blue; the top byte is 0.
using TColor = uint32_t;

constexpr TColor MakeColor(uint8_t r, uint8_t g, uint8_t b) {
    return static_cast<TColor>(r) | static_cast<TColor>(g) << 8 | static_cast<TColor>(b) << 16;
}
constexpr uint8_t RedOf(TColor color) { return static_cast<uint8_t>(color); }
constexpr uint8_t GreenOf(TColor color) { return static_cast<uint8_t>(color >> 8); }
constexpr uint8_t BlueOf(TColor color) { return static_cast<uint8_t>(color >> 16); }

/// Grey level of a colour: R * 0.299 + G * 0.587 + B * 0.114 (ITU-R BT.601 luma weights), summed in double
/// precision, rounded to single, truncated. Rounding to single keeps the level of a neutral colour: in
/// double the sum can fall slightly below the integer.
constexpr uint8_t GreyOf(uint8_t r, uint8_t g, uint8_t b) {
    return static_cast<uint8_t>(static_cast<float>(r * 0.299 + g * 0.587 + b * 0.114));
}
