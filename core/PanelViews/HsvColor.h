// Hue, saturation and value of a colour, in whole numbers.
#pragma once

#include "core/Base/Color.h"

struct THsv {
    int nHue = 0;        ///< 0 to 359 degrees; 0 red, 120 green, 240 blue
    int nSaturation = 0; ///< 0 to 255
    int nValue = 0;      ///< 0 to 255

    friend bool operator==(const THsv&, const THsv&) = default;
};

TColor ColorOfHsv(const THsv& hsv);
/// Undefined parts (the hue of a grey, the saturation of black) are taken from `like`.
THsv HsvOfColor(TColor color, const THsv& like);
