#include "core/Base/StableMath.h"

TEST(StableMath, AgreesWithTheLibraryAndTruncatesWholeDegreesAlike) {
    for (double x = 0; x > -30; x -= 0.0037) EXPECT_NEAR(StableExp(x) / std::exp(x), 1, 1e-15) << x;
    EXPECT_EQ(StableExp(0), 1.0);
    for (double x = 1e-9; x < 1e9; x *= 1.0371)
        EXPECT_NEAR(StableLog(x), std::log(x), 3e-16 * std::abs(std::log(x))) << x;
    EXPECT_NEAR(StableLog(1 - 0x1p-40) / -0x1p-40, 1, 1e-12);
    EXPECT_EQ(StableLog(1), 0.0);
    for (int n = 1; n <= 255; ++n)
        for (const double y : {0.25, 1.0 / 3, 1.0, 10.0})
            EXPECT_NEAR(StablePow(n / 255.0, y) / std::pow(n / 255.0, y), 1, 1e-14) << n;
    EXPECT_EQ(StablePow(0, 0.3), 0.0);
    for (int n = -360; n <= 360; ++n) {
        const double dAngle = n * 3.14159265358979323846 / 180;
        const TSinCos sc = StableSinCos(dAngle);
        EXPECT_NEAR(sc.dSin, std::sin(dAngle), 2e-16) << n;
        EXPECT_NEAR(sc.dCos, std::cos(dAngle), 2e-16) << n;
        // Products with a half are what truncation tells apart.
        for (const int nLength : {2, 10, 1000, 4096}) {
            EXPECT_EQ(static_cast<int>(nLength * sc.dSin), static_cast<int>(nLength * std::sin(dAngle))) << n;
            EXPECT_EQ(static_cast<int>(nLength * sc.dCos), static_cast<int>(nLength * std::cos(dAngle))) << n;
        }
    }
}
