#include "core/RasterKernel/HsbKernel.h"
#include "core/Base/Failure.h"
#include "tests/support/TargetTest.h"

namespace {

using HsbKernels_ = CTargetTest;
using TRgb = std::array<uint8_t, 3>;
using TPlanes = std::array<std::vector<uint8_t>, 4>; // R, G, B and a mask

TColorPixels Dest(TPlanes& av) { return {av[0].data(), av[1].data(), av[2].data(), nullptr}; }
TConstColorPixels Source(const TPlanes& av) { return {av[0].data(), av[1].data(), av[2].data(), nullptr}; }
TRgb Pixel(const TPlanes& av, size_t i) { return {av[0][i], av[1][i], av[2][i]}; }

TRgb Adjusted(const TRgb& rgb, const THsbValues& values) {
    TPlanes av{{{rgb[0]}, {rgb[1]}, {rgb[2]}, {}}};
    AdjustHsb(Dest(av), Source(av), nullptr, MakeHsbTables(values), 1);
    return Pixel(av, 0);
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

} // namespace

TEST(HsbKernel, SlidersAtTheirStartKeepEveryColour) {
    TPlanes av, avResult;
    for (auto& v : av) v.resize(65536);
    for (size_t i = 0; i < 65536; ++i) av[0][i] = uint8_t(i), av[1][i] = uint8_t(i >> 8);
    for (int nBlue = 0; nBlue < 256; nBlue += 3) {
        av[2].assign(65536, uint8_t(nBlue));
        avResult = av;
        AdjustHsb(Dest(avResult), Source(avResult), nullptr, MakeHsbTables({}), 65536);
        ASSERT_TRUE(av == avResult) << "blue " << nBlue;
    }
}

TEST(HsbKernel, NamedColours) {
    const THsbValues fullSat{.fSat = 1, .afSatBand = {0.5F, 0.5F, 0.5F}}, noSat{.fSat = -1};
    const auto hue = [](float fHue) { return THsbValues{.fHue = fHue}; };
    const auto lighter = [](float p) { return THsbValues{.fSatPriority = p, .afBrightBand = {0, 0.25F, 0}}; };
    EXPECT_EQ(Adjusted({255, 0, 0}, hue(120)), (TRgb{0, 255, 0}));
    EXPECT_EQ(Adjusted({255, 0, 0}, hue(-60)), (TRgb{255, 0, 255}));
    for (const float fHue : {-180.0F, 180.0F})
        EXPECT_EQ(Adjusted({200, 100, 50}, hue(fHue)), (TRgb{50, 150, 200}));
    EXPECT_EQ(Adjusted({90, 90, 90}, fullSat), (TRgb{90, 90, 90}));
    EXPECT_EQ(Adjusted({0, 0, 255}, noSat), (TRgb{128, 128, 128}));
    EXPECT_EQ(Adjusted({255, 0, 0}, lighter(1)), (TRgb{255, 0, 0})) << "chroma stays";
    EXPECT_EQ(Adjusted({255, 0, 0}, lighter(0)), (TRgb{255, 128, 128})) << "lightness stays";
    for (const auto& [nPosition, fValue] :
         std::vector<std::pair<int, float>>{{0, -1.0F}, {256, 0.0F}, {320, 0.125F}, {192, -0.125F}})
        EXPECT_EQ(HsbCurve(nPosition), fValue);
    EXPECT_THROW(MakeHsbTables(hue(181)), constraint_violation);
    EXPECT_THROW(MakeHsbTables(lighter(-0.1F)), constraint_violation);
}

TEST(HsbKernel, GreyPlanesHeedBrightnessOnly) {
    const THsbValues values{77, 0.1F, 0.9F, {0.5F, 0, 0}, 0.1F, {0.3F, -0.2F, 0.1F}};
    const THsbValues brightness{0, 0.5F, 0, {}, values.fBright, values.afBrightBand};
    std::vector<uint8_t> vGrey(256), vMask(256, 100);
    std::iota(vGrey.begin(), vGrey.end(), uint8_t{0});
    AdjustHsb(vGrey.data(), vGrey.data(), vMask.data(), MakeHsbTables(values), 256);
    for (int g = 0; g < 256; ++g)
        EXPECT_EQ(vGrey[size_t(g)], Expected({uint8_t(g), uint8_t(g), uint8_t(g)}, brightness, 100)[0]);
}

TEST_P(HsbKernels_, StepsAreThoseOfTheDefinitionInBothForms) {
    std::mt19937 random(4);
    const auto part = [&](float f) { return f * (float(random() % 2001) / 1000 - 1); };
    TPlanes av;
    for (auto& v : av)
        for (size_t i = 0; i < 10007; ++i) v.push_back(random() % 4 ? uint8_t(random()) : random() % 2 * 255);
    for (size_t n = 0; n < 200; ++n) {
        THsbValues values{part(180), 0.5F + part(0.5F), part(0.4F), {}, part(0.4F), {}};
        for (size_t i = 0; i < 3; ++i) values.afSatBand[i] = part(0.5F), values.afBrightBand[i] = part(0.5F);
        const THsbTables tables = MakeHsbTables(values);
        const size_t nCount = av[0].size() - n;
        TPlanes avPlain = av, avVector = av, avMixed = av;
        PlainHsbKernels().pAdjust(Dest(avPlain), Source(av), tables, nCount);
        VectorHsbKernels().pAdjust(Dest(avVector), Source(avVector), tables, nCount);
        ASSERT_TRUE(avPlain == avVector) << n;
        AdjustHsb(Dest(avMixed), Source(avMixed), av[3].data(), tables, nCount);
        for (size_t i = n % 9; i < nCount; i += 9) {
            ASSERT_EQ(Pixel(avPlain, i), Expected(Pixel(av, i), values, 255)) << n << ' ' << i;
            ASSERT_EQ(Pixel(avMixed, i), Expected(Pixel(av, i), values, av[3][i])) << n << ' ' << i;
        }
    }
}

TEST_P(HsbKernels_, LeastChromaShowsNoHue) {
    for (const auto& [fChroma, uLargest] : {std::pair{1.1e-7F, 99}, {1.3e-7F, 100}}) {
        THsbTables tables = MakeHsbTables({});
        tables.afChroma.fill(fChroma);
        tables.afLight.fill(99.5F / 255); // between two levels
        for (const THsbKernels* p : {&PlainHsbKernels(), &VectorHsbKernels()}) {
            TPlanes av;
            for (size_t n = 0; n < 3; ++n) av[n].assign(64, uint8_t(n == 0 ? 200 : 50));
            p->pAdjust(Dest(av), Source(av), tables, 64);
            EXPECT_EQ(Pixel(av, 0), (TRgb{uint8_t(uLargest), 99, 99}));
        }
    }
}

ON_EVERY_TARGET(HsbKernels_);
