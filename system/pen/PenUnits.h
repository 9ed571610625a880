// The units of a pen's packets, and packets given in others.
#pragma once

#include "core/Platform/Pen.h"

/// Ranges of the axes, and position units per device pixel of the screen.
struct TPenUnits {
    TPenAxis pressure;
    TPenAxis altitude;
    int32_t nPerPixel = 1;
};

/// A packet in other units; its position is moved by `ptShift` pixels and is the centre of its unit. A
/// pressure up to 2 percent of the axis stays so, one above the minimum never becomes the minimum. A pen
/// without an altitude is upright.
TPenPacket ConvertPacket(const TPenPacket& packet, const TPenUnits& from, const TPenUnits& to,
                         CPoint ptShift);
/// The screen pixel of a packet's position.
CPoint PixelOf(const TPenPacket& packet, const TPenUnits& units);
