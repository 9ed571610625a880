// Flat runs of planar pixels: one pointer per channel, straight alpha, no padding.
#pragma once

#include <cstdint>

/// Writable colour pixels.
struct TColorPixels {
    uint8_t* pR;
    uint8_t* pG;
    uint8_t* pB;
    uint8_t* pA;
};

/// Read-only colour pixels.
struct TConstColorPixels {
    const uint8_t* pR;
    const uint8_t* pG;
    const uint8_t* pB;
    const uint8_t* pA;
};

/// Writable grey pixels.
struct TGreyPixels {
    uint8_t* pGrey;
    uint8_t* pA;
};

/// Read-only grey pixels.
struct TConstGreyPixels {
    const uint8_t* pGrey;
    const uint8_t* pA;
};

/// The one colour of a coverage plane.
struct TInk {
    uint8_t uR;
    uint8_t uG;
    uint8_t uB;
};
