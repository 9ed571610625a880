#include "core/Base/StableMath.h"

TEST(StableMath, AgreesWithTheLibraryAndTruncatesWholeDegreesAlike) {
    for (double x = 0; x > -30; x -= 0.0037) EXPECT_NEAR(StableExp(x) / std::exp(x), 1, 1e-15) << x;
    EXPECT_EQ(StableExp(0), 1.0);
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
