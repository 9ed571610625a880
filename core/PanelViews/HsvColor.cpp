#include "core/PanelViews/HsvColor.h"

#include <algorithm>

TColor ColorOfHsv(const THsv& hsv) {
    const int nSector = hsv.nHue / 60;
    const int nWithin = hsv.nHue % 60;
    const int v = hsv.nValue;
    const auto part = [&](int nSixtieths) {
        return static_cast<uint8_t>((v * (255 * 60 - hsv.nSaturation * nSixtieths) + 255 * 30) / (255 * 60));
    };
    const auto top = static_cast<uint8_t>(v);
    const uint8_t low = part(60), falling = part(nWithin), rising = part(60 - nWithin);
    switch (nSector) {
    case 0:
        return MakeColor(top, rising, low);
    case 1:
        return MakeColor(falling, top, low);
    case 2:
        return MakeColor(low, top, rising);
    case 3:
        return MakeColor(low, falling, top);
    case 4:
        return MakeColor(rising, low, top);
    default:
        return MakeColor(top, low, falling);
    }
}

THsv HsvOfColor(TColor color, const THsv& like) {
    const int r = RedOf(color), g = GreenOf(color), b = BlueOf(color);
    const int nMax = std::max({r, g, b}), nMin = std::min({r, g, b});
    const int nSpan = nMax - nMin;
    THsv hsv{like.nHue, nMax == 0 ? like.nSaturation : (nSpan * 255 + nMax / 2) / nMax, nMax};
    if (nSpan == 0) return hsv;
    const auto hue = [&](int nBase, int nDifference) {
        return (nBase * nSpan + nDifference * 60 + 360 * nSpan + nSpan / 2) / nSpan % 360;
    };
    hsv.nHue = nMax == r ? hue(0, g - b) : nMax == g ? hue(120, b - r) : hue(240, r - g);
    return hsv;
}
