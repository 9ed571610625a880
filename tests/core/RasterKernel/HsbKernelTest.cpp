#include "core/RasterKernel/HsbKernel.h"
#include "core/Base/Failure.h"
#include "tests/support/TargetTest.h"

namespace {

using TRgb = std::array<uint8_t, 3>;

TRgb Adjusted(const TRgb& rgb, const THsbValues& values) {
    TRgb result{};
    AdjustHsb({&result[0], &result[1], &result[2], nullptr}, {&rgb[0], &rgb[1], &rgb[2], nullptr}, nullptr,
              MakeHsbTables(values), 1);
    return result;
}

// The definition in the simplest form, with the library's functions.
TRgb Expected(const TRgb& rgb, const THsbValues& v, int nMask) {
    const auto bump = [](double x) {
        const double d = std::abs(x);
        return float(d <= 1 ? 1 - d * d / 2 : d <= 2 ? (2 - d) * (2 - d) / 2 : 0);
    };
    const int nMin = std::min({rgb[0], rgb[1], rgb[2]}), nMax = std::max({rgb[0], rgb[1], rgb[2]});
    const float R = rgb[0], G = rgb[1], B = rgb[2], c = float(nMax - nMin);
    float h = 0;
    if (c > 0)
        h = B == float(nMin)   ? (G - R) * 60 / c + 60
            : R == float(nMin) ? (B - G) * 60 / c + 180
                               : (R - B) * 60 / c + 300;
    const double y = std::cbrt((nMax - nMin) / 255.0), x = (nMax + nMin) * 0.5 / 255;
    float s = float(y) + (v.afSatBand[0] + v.fSat) * bump((y - 0.33) * 6) +
              (v.afSatBand[1] + v.fSat) * bump((y - 0.66) * 6) +
              (v.afSatBand[2] + v.fSat) * bump((y - 1) * 6);
    s = std::clamp(s * s * s, 0.0F, 1.0F);
    float l = float(x) + (v.afBrightBand[0] + v.fBright) * bump(x * 4) +
              (v.afBrightBand[1] + v.fBright) * bump((x - 0.5) * 4) +
              (v.afBrightBand[2] + v.fBright) * bump((x - 1) * 4);
    l = std::clamp(l, 0.0F, 1.0F);
    h = std::fmod(h + v.fHue + 3600, 360.0F);
    const float p = v.fSatPriority;
    if (l >= 0.5F && s > 2 - 2 * l) {
        l = l * (1 - p) + (1 - s / 2) * p;
        s = s * p + (1 - p) * (2 - 2 * l);
    } else if (l < 0.5F && s > 2 * l) {
        l = l * (1 - p) + (s / 2) * p;
        s = s * p + (1 - p) * (2 * l);
    }
    const float lo = l - s / 2, hi = l + s / 2, w = hi - lo;
    const std::array<std::array<float, 3>, 6> aaf{{{hi, lo + h * w / 60, lo},
                                                   {lo + (120 - h) * w / 60, hi, lo},
                                                   {lo, hi, lo + (h - 120) * w / 60},
                                                   {lo, lo + (240 - h) * w / 60, hi},
                                                   {lo + (h - 240) * w / 60, lo, hi},
                                                   {hi, lo, lo + (360 - h) * w / 60}}};
    TRgb result{};
    for (size_t n = 0; n < 3; ++n) {
        const float f = s < 1.1920929e-07F ? lo : aaf[size_t(h / 60)][n];
        const int nValue = int(std::clamp(f * 255 + 0.5F, 0.0F, 255.0F));
        result[n] = uint8_t(rgb[n] + (nValue - rgb[n]) * nMask / 255);
    }
    return result;
}

using HsbKernels_ = CTargetTest;

} // namespace

TEST(HsbKernel, SlidersAtTheirStartKeepEveryColour) {
    const THsbTables tables = MakeHsbTables({});
    std::array<std::vector<uint8_t>, 6> av;
    for (auto& v : av) v.resize(65536);
    for (size_t i = 0; i < 65536; ++i) av[0][i] = uint8_t(i), av[1][i] = uint8_t(i >> 8);
    for (int nBlue = 0; nBlue < 256; nBlue += 3) {
        av[2].assign(65536, uint8_t(nBlue));
        AdjustHsb({av[3].data(), av[4].data(), av[5].data(), nullptr},
                  {av[0].data(), av[1].data(), av[2].data(), nullptr}, nullptr, tables, 65536);
        for (size_t n = 0; n < 3; ++n) ASSERT_EQ(av[n], av[n + 3]) << "blue " << nBlue;
    }
}

TEST(HsbKernel, NamedColours) {
    const auto values = [](auto fnSet) {
        THsbValues v;
        fnSet(v);
        return v;
    };
    const auto hue = [](float fHue) { return THsbValues{.fHue = fHue}; };
    EXPECT_EQ(Adjusted({255, 0, 0}, hue(120)), (TRgb{0, 255, 0}));
    EXPECT_EQ(Adjusted({255, 0, 0}, hue(-60)), (TRgb{255, 0, 255}));
    EXPECT_EQ(Adjusted({200, 100, 50}, hue(180)), (TRgb{50, 150, 200}));
    EXPECT_EQ(Adjusted({200, 100, 50}, hue(-180)), (TRgb{50, 150, 200}));
    EXPECT_EQ(Adjusted({90, 90, 90}, values([](auto& v) {
                           v.fSat = 1, v.afSatBand = {0.5F, 0.5F, 0.5F};
                       })),
              (TRgb{90, 90, 90}));
    EXPECT_EQ(Adjusted({0, 0, 255}, values([](auto& v) { v.fSat = -1; })), (TRgb{128, 128, 128}));
    const auto lighter = [&](float p) {
        return values([&](auto& v) { v.fSatPriority = p, v.afBrightBand[1] = 0.25F; });
    };
    EXPECT_EQ(Adjusted({255, 0, 0}, lighter(1)), (TRgb{255, 0, 0})) << "chroma stays";
    EXPECT_EQ(Adjusted({255, 0, 0}, lighter(0)), (TRgb{255, 128, 128})) << "lightness stays";
    EXPECT_EQ(HsbCurve(0), -1);
    EXPECT_EQ(HsbCurve(256), 0);
    EXPECT_EQ(HsbCurve(320), 0.125F);
    EXPECT_EQ(HsbCurve(192), -0.125F);
    EXPECT_THROW(MakeHsbTables(hue(181)), constraint_violation);
    EXPECT_THROW(MakeHsbTables({.fSatPriority = -0.1F}), constraint_violation);
}

TEST(HsbKernel, GreyPlanesHeedBrightnessOnly) {
    THsbValues values{.afBrightBand = {0.3F, -0.2F, 0.1F}};
    std::vector<uint8_t> vGrey(256), vFirst(256), vSecond(256);
    std::iota(vGrey.begin(), vGrey.end(), uint8_t{0});
    AdjustHsb(vFirst.data(), vGrey.data(), nullptr, MakeHsbTables(values), 256);
    values.fHue = 77, values.fSat = 0.9F, values.fSatPriority = 0.1F, values.afSatBand[0] = 0.5F;
    AdjustHsb(vSecond.data(), vGrey.data(), nullptr, MakeHsbTables(values), 256);
    EXPECT_EQ(vFirst, vSecond);
    for (size_t g = 0; g < 256; ++g)
        EXPECT_EQ(vFirst[g], Expected({vGrey[g], vGrey[g], vGrey[g]}, values, 255)[0]);
    const uint8_t uMask = 100;
    AdjustHsb(vGrey.data() + 255, vGrey.data() + 255, &uMask, MakeHsbTables({.fBright = -1}), 1);
    EXPECT_EQ(vGrey[255], 155);
}

TEST_P(HsbKernels_, StepsAreThoseOfTheDefinitionInBothForms) {
    std::mt19937 random(4);
    const auto part = [&](float f) { return f * (float(random() % 2001) / 1000 - 1); };
    using TPlanes = std::array<std::vector<uint8_t>, 4>;
    const auto dest = [](TPlanes& av) {
        return TColorPixels{av[0].data(), av[1].data(), av[2].data(), nullptr};
    };
    const auto source = [](const TPlanes& av) {
        return TConstColorPixels{av[0].data(), av[1].data(), av[2].data(), nullptr};
    };
    for (int n = 0; n < 200; ++n) {
        THsbValues values{part(180), 0.5F + part(0.5F), part(0.4F), {}, part(0.4F), {}};
        for (size_t i = 0; i < 3; ++i) values.afSatBand[i] = part(0.5F), values.afBrightBand[i] = part(0.5F);
        const THsbTables tables = MakeHsbTables(values);
        // Odd lengths, also over what a mask mixes at once.
        const size_t nCount = n == 0 ? 65535 : 900 + size_t(n);
        TPlanes av;
        for (auto& v : av)
            for (size_t i = 0; i < nCount; ++i)
                v.push_back(random() % 4 ? uint8_t(random()) : random() % 2 * 255);
        TPlanes avPlain = av, avVector = av, avMixed = av;
        PlainHsbKernels().pAdjust(dest(avPlain), source(av), tables, nCount);
        VectorHsbKernels().pAdjust(dest(avVector), source(avVector), tables, nCount);
        AdjustHsb(dest(avMixed), source(avMixed), av[3].data(), tables, nCount);
        const auto pixel = [](const TPlanes& planes, size_t i) {
            return TRgb{planes[0][i], planes[1][i], planes[2][i]};
        };
        for (size_t i = 0; i < nCount; ++i) {
            const TRgb rgb = pixel(av, i), expected = Expected(rgb, values, 255);
            ASSERT_EQ(pixel(avPlain, i), expected) << n << ' ' << i;
            ASSERT_EQ(pixel(avVector, i), expected) << n << ' ' << i;
            ASSERT_EQ(pixel(avMixed, i), Expected(rgb, values, av[3][i])) << n << ' ' << i;
        }
    }
}

ON_EVERY_TARGET(HsbKernels_);
