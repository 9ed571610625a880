#include "system/pen/PenUnits.h"

#include "core/Tools/PenCurve.h"

#include <gtest/gtest.h>

namespace {

TPenPacket Pressed(uint32_t uPressure) {
    TPenPacket packet;
    packet.uPressure = uPressure;
    return packet;
}

constexpr TPenUnits TO{{0, 65535}, {0, 900}, 32};

} // namespace

TEST(PenUnits, PressuresKeepTheirShareAndTheirThreshold) {
    const auto converted = [](uint32_t uPressure, const TPenAxis& axis) {
        return ConvertPacket(Pressed(uPressure), {axis, {0, 900}, 1}, TO, {}).uPressure;
    };
    // 2 percent: 40 of 2047, 20 of 1023, 1310 of 65535.
    const CPressRange range(TO.pressure);
    for (const auto& [axis, uLight] : {std::pair(TPenAxis{0, 2047}, 40u),
                                       {{100, 1123}, 120u},
                                       {{0, 65535}, 1310u},
                                       {{0, 1000}, 20u},
                                       {{0, 8191}, 163u}}) {
        EXPECT_TRUE(range.IsLow(converted(uLight, axis))) << axis.nMax;
        EXPECT_FALSE(range.IsLow(converted(uLight + 1, axis))) << axis.nMax;
        EXPECT_EQ(converted(static_cast<uint32_t>(axis.nMin), axis), 0u);
        EXPECT_EQ(converted(static_cast<uint32_t>(axis.nMax), axis), 65535u);
        EXPECT_EQ(converted(static_cast<uint32_t>(axis.nMax) + 9, axis), 65535u);
    }
    EXPECT_EQ(converted(612, {100, 1123}), 32799u); // 512 of 1023
    EXPECT_EQ(converted(7, {100, 1123}), 0u);
    EXPECT_EQ(converted(1, {0, 200000}), 1u);
    EXPECT_EQ(converted(5, {3, 3}), 0u);
}

TEST(PenUnits, PlacesAndAnglesAreScaledAndRoundedDown) {
    const TPenUnits from{{0, 2047}, {0, 1800}, 23};
    TPenPacket packet{.x = 1157, .y = -5, .nAzimuth = 77, .nAltitude = -900};
    TPenPacket result = ConvertPacket(packet, from, TO, {});
    EXPECT_TRUE(result.x == 1610 && result.y == -7); // 1157.5 * 32 / 23 = 1610.4, and -6.3
    EXPECT_TRUE(result.nAltitude == -450 && result.nAzimuth == 77);
    result = ConvertPacket(packet, from, TO, {-60, 2});
    EXPECT_TRUE(result.x == 1610 - 60 * 32 && result.y == -7 + 2 * 32);
    result = ConvertPacket({.x = 50, .y = -2}, {{0, 2047}, {0, 900}, 1}, TO, {});
    EXPECT_TRUE(result.x == 50 * 32 + 16 && result.y == -2 * 32 + 16); // the centre of the pixel
    result = ConvertPacket({.x = 51, .y = -7}, TO, TO, {});
    EXPECT_TRUE(result.x == 51 && result.y == -7);
    EXPECT_TRUE(PixelOf(packet, from) == CPoint(50, -1));
    packet.nAltitude = 0;
    EXPECT_EQ(ConvertPacket(packet, {{0, 2047}, {0, 0}, 23}, TO, {}).nAltitude, 900);
    packet.nAltitude = 4000;
    EXPECT_EQ(ConvertPacket(packet, from, TO, {}).nAltitude, 900);
}
