#include "core/RasterKernel/HsbKernel.h"

#include "core/Base/Failure.h"
#include "core/Base/StableMath.h"
#include "core/RasterKernel/KernelChoice.h"

#include <algorithm>
#include <cmath>

namespace {

// The weight of a band at a distance from its centre.
double Bump(double dDistance) {
    const double d = std::abs(dDistance);
    return d <= 1 ? 1 - d * d / 2 : d <= 2 ? (2 - d) * (2 - d) / 2 : 0;
}

// A value of a scale changed by the bands; the scale and the weights are rounded to single precision.
float AddBands(double dBase, const std::array<double, 3>& adPlaces, const std::array<float, 3>& afBand,
               float fMaster) {
    auto f = static_cast<float>(dBase);
    for (size_t n = 0; n < 3; ++n) f = f + (afBand[n] + fMaster) * static_cast<float>(Bump(adPlaces[n]));
    return f;
}

float Limited(float f) { return std::clamp(f, 0.0F, 1.0F); }
uint8_t Level(float f) { return static_cast<uint8_t>(std::clamp(f * 255 + 0.5F, 0.0F, 255.0F)); }

// Degrees, 0 to less than 360.
float HueOf(int nR, int nG, int nB, int nMin, int nChroma) {
    if (nChroma == 0) return 0;
    const auto hue = [&](int nDifference, float fMiddle) {
        return static_cast<float>(nDifference * 60) / static_cast<float>(nChroma) + fMiddle;
    };
    return nB == nMin ? hue(nG - nR, 60) : nR == nMin ? hue(nB - nG, 180) : hue(nR - nB, 300);
}

// The sum of at least 3420 and less than 4140 modulo 360. The difference is exact: it is a multiple of the
// sum's last place, and smaller than the sum.
float TurnHue(float fHue, float fTurn) {
    const float f = fHue + fTurn + 3600;
    return f - (f >= 3960 ? 3960.0F : f >= 3600 ? 3600.0F : 3240.0F);
}

struct TChromaLight {
    float s;
    float l;
};

// Chroma and lightness of a colour that exists: the priority p says which of them gives way.
TChromaLight ToGamut(float s, float l, float p) {
    if (l >= 0.5F) {
        if (s > 2 - 2 * l) {
            l = l * (1 - p) + (1 - s / 2) * p;
            s = s * p + (1 - p) * (2 - 2 * l);
        }
    } else if (s > 2 * l) {
        l = l * (1 - p) + (s / 2) * p;
        s = s * p + (1 - p) * (2 * l);
    }
    return {s, l};
}

struct TRgb {
    float r, g, b;
};

TRgb ToRgb(float h, float s, float l) {
    const float lo = l - s / 2, hi = l + s / 2, w = hi - lo;
    if (s < 1.1920929e-07F) return {lo, lo, lo};
    if (h < 60) return {hi, lo + h * w / 60, lo};
    if (h < 120) return {lo + (120 - h) * w / 60, hi, lo};
    if (h < 180) return {lo, hi, lo + (h - 120) * w / 60};
    if (h < 240) return {lo, lo + (240 - h) * w / 60, hi};
    if (h < 300) return {lo + (h - 240) * w / 60, lo, hi};
    return {hi, lo, lo + (360 - h) * w / 60};
}

void Adjust(const TColorPixels& dest, const TConstColorPixels& source, const THsbTables& tables,
            size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) {
        const int nR = source.pR[i], nG = source.pG[i], nB = source.pB[i];
        const auto [nMin, nMax] = std::minmax({nR, nG, nB});
        const float h = TurnHue(HueOf(nR, nG, nB, nMin, nMax - nMin), tables.fHue);
        const auto [s, l] = ToGamut(tables.afChroma[static_cast<size_t>(nMax - nMin)],
                                    tables.afLight[static_cast<size_t>(nMax + nMin)], tables.fSatPriority);
        const auto [r, g, b] = ToRgb(h, s, l);
        dest.pR[i] = Level(r), dest.pG[i] = Level(g), dest.pB[i] = Level(b);
    }
}

} // namespace

const THsbKernels& PlainHsbKernels() {
    static constexpr THsbKernels kernels{Adjust};
    return kernels;
}

const THsbKernels& HsbKernels() { return UsesVectorKernels() ? VectorHsbKernels() : PlainHsbKernels(); }

THsbTables MakeHsbTables(const THsbValues& values) {
    SELF_CHECK(invalid_argument, values.fHue >= -180 && values.fHue <= 180);
    SELF_CHECK(invalid_argument, values.fSatPriority >= 0 && values.fSatPriority <= 1);
    THsbTables tables{};
    tables.fHue = values.fHue;
    tables.fSatPriority = values.fSatPriority;
    for (size_t c = 0; c < tables.afChroma.size(); ++c) {
        const double y = StablePow(static_cast<double>(c) / 255, 1.0 / 3);
        const float f =
            AddBands(y, {(y - 0.33) * 6, (y - 0.66) * 6, (y - 1.0) * 6}, values.afSatBand, values.fSat);
        tables.afChroma[c] = Limited(f * f * f);
    }
    for (size_t i = 0; i + 1 < tables.afLight.size(); ++i) {
        const double x = static_cast<double>(i) * 0.5 / 255;
        tables.afLight[i] =
            Limited(AddBands(x, {x * 4, (x - 0.5) * 4, (x - 1.0) * 4}, values.afBrightBand, values.fBright));
    }
    for (size_t g = 0; g < tables.grey.size(); ++g) tables.grey[g] = Level(tables.afLight[2 * g]);
    return tables;
}

void AdjustHsb(const TColorPixels& dest, const TConstColorPixels& source, const uint8_t* pMask,
               const THsbTables& tables, size_t nCount) {
    const THsbKernels& kernels = HsbKernels();
    if (!pMask) {
        kernels.pAdjust(dest, source, tables, nCount);
        return;
    }
    const TLevelKernels& levels = LevelKernels();
    std::array<uint8_t, MIX_SPAN> aR, aG, aB;
    for (size_t i = 0; i < nCount; i += MIX_SPAN) {
        const size_t nPart = std::min(MIX_SPAN, nCount - i);
        const TConstColorPixels part{source.pR + i, source.pG + i, source.pB + i, nullptr};
        kernels.pAdjust({aR.data(), aG.data(), aB.data(), nullptr}, part, tables, nPart);
        levels.pMix(dest.pR + i, part.pR, aR.data(), pMask + i, nPart);
        levels.pMix(dest.pG + i, part.pG, aG.data(), pMask + i, nPart);
        levels.pMix(dest.pB + i, part.pB, aB.data(), pMask + i, nPart);
    }
}

void AdjustHsb(uint8_t* pDest, const uint8_t* pSource, const uint8_t* pMask, const THsbTables& tables,
               size_t nCount) {
    ApplyLevels(pDest, pSource, pMask, tables.grey, nCount);
}

float HsbCurve(int nPosition) {
    const float v = static_cast<float>(nPosition) / 256 - 1;
    const float f = std::abs(v);
    return std::copysign(f * std::sqrt(f), v);
}
