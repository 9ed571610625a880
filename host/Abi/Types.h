// Basic types, selectors and results of the published filter interface, declared afresh for 64 bits.
#pragma once

#include <cstdint>

namespace hostabi {

using Boolean = uint8_t;
using Fixed = int32_t; ///< 16.16
using OSType = uint32_t;
using Handle = char**;
using SPErr = int32_t; ///< result of every suite function, 0 is success
using SPBoolean = int32_t;

// Order is always y before x.
struct Point {
    int16_t v, h;
};
struct Rect {
    int16_t top, left, bottom, right;
};
struct VPoint {
    int32_t v, h;
};
struct VRect {
    int32_t top, left, bottom, right;
};
struct RGBColor {
    uint16_t red, green, blue;
};
struct FilterColor {
    uint8_t value[4];
};

/// A four-character code as a number.
constexpr OSType MakeCode(const char (&code)[5]) {
    OSType u = 0;
    for (int i = 0; i < 4; ++i) u = u << 8 | static_cast<uint8_t>(code[i]);
    return u;
}

enum ESelector : int16_t {
    filterSelectorAbout = 0,
    filterSelectorParameters = 1,
    filterSelectorPrepare = 2,
    filterSelectorStart = 3,
    filterSelectorContinue = 4,
    filterSelectorFinish = 5,
};

enum EResult : int16_t {
    noErr = 0,
    paramErr = -50,
    memFullErr = -108,
    userCanceledErr = -128,
    filterBadParameters = -30100,
    errPlugInHostInsufficient = -30900,
    errUnknownPort = -30910,
    errUnsupportedRowBits = -30911,
    errUnsupportedColBits = -30912,
    errUnsupportedBitOffset = -30913,
    errUnsupportedDepth = -30914,
};

constexpr SPErr SP_SUITE_NOT_FOUND = static_cast<SPErr>(MakeCode("S!Fd"));
constexpr SPErr SP_BAD_PARAMETER = static_cast<SPErr>(MakeCode("Parm"));
constexpr SPErr SP_NOT_IMPLEMENTED = static_cast<SPErr>(MakeCode("!IMP"));

constexpr int16_t IMAGE_MODE_RGB = 3;

/// Type of the exported function.
using PluginMainProc = void (*)(int16_t selector, void* record, intptr_t* data, int16_t* result);

static_assert(sizeof(void*) == 8, "the records below are those of a 64-bit host");
static_assert(sizeof(Rect) == 8 && sizeof(VRect) == 16 && sizeof(RGBColor) == 6);

} // namespace hostabi
