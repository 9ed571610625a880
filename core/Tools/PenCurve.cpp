#include "core/Tools/PenCurve.h"

#include "core/IniConfig/IniConfig.h"
#include "core/Platform/Pen.h"
#include "core/RasterStroke/CtlPoint.h"

#include <algorithm>

namespace {

constexpr wchar_t SECTION[] = L"Tablet";
constexpr uint32_t THRESHOLD_PERCENT = 2;
constexpr uint32_t ENOUGH = 100;             ///< reports
constexpr uint32_t NARROWEST = 65536 / 16;   ///< range that can be stretched
constexpr uint32_t LOWEST = 5, HIGHEST = 95; ///< percentiles: the ends of strokes do not count
constexpr uint32_t BIN = TPenCurve::FULL / CPressHistogram::BINS;

} // namespace

CPressRange::CPressRange(const TPenAxis& axis) : m_uMin(static_cast<uint32_t>(axis.nMin)) {
    const uint32_t uWhole = static_cast<uint32_t>(axis.nMax - axis.nMin);
    m_uThreshold = uWhole * THRESHOLD_PERCENT / 100;
    m_uRange = std::max(1u, uWhole - m_uThreshold);
}

uint32_t CPressRange::Above(uint32_t uPressure) const {
    const uint32_t u = uPressure - m_uMin;
    return u > m_uThreshold ? u - m_uThreshold : 0;
}

bool CPressRange::IsLow(uint32_t uPressure) const {
    return uPressure != m_uMin && uPressure - m_uMin <= m_uThreshold;
}

uint32_t TPenCurve::Apply(uint32_t uPressure, uint32_t uRange) const {
    if (uPressure == 0 || *this == TPenCurve()) return uPressure;
    const uint64_t uAt = std::clamp<uint64_t>(uint64_t{uPressure} * FULL / uRange, uLow, uHigh) - uLow;
    const uint64_t uWhole = uHigh - uLow, uHalf = uMiddle - uLow;
    // A hyperbola: it has no corner, and whole numbers compute it exactly.
    const uint64_t uRise = uAt * (uWhole - uHalf);
    const uint64_t uShare = FULL * uRise / (uRise + uHalf * (uWhole - uAt));
    return std::max((uRange + FULL_PRESSURE - 1) / FULL_PRESSURE,
                    static_cast<uint32_t>(uShare * uRange / FULL));
}

TPenCurve TPenCurve::Read(CIniConfig& config) {
    const auto spSection = config.GetSection(SECTION);
    const auto read = [&](const wchar_t* pszKey, uint32_t uDefault) {
        return static_cast<uint32_t>(spSection->GetInt(pszKey, static_cast<int32_t>(uDefault)));
    };
    const TPenCurve straight;
    const TPenCurve curve{read(L"PressLow", straight.uLow), read(L"PressMiddle", straight.uMiddle),
                          read(L"PressHigh", straight.uHigh)};
    const bool bRises = curve.uLow < curve.uMiddle && curve.uMiddle < curve.uHigh && curve.uHigh <= FULL;
    return bRises ? curve : straight;
}

void TPenCurve::Write(CIniConfig& config) const {
    config.GetSection(SECTION)->SetInts({{L"PressLow", static_cast<int32_t>(uLow)},
                                         {L"PressMiddle", static_cast<int32_t>(uMiddle)},
                                         {L"PressHigh", static_cast<int32_t>(uHigh)}});
}

void CPressHistogram::Add(uint32_t uPressure, uint32_t uRange) {
    const uint64_t uBin = uint64_t{uPressure} * BINS / std::max(uRange, 1u);
    ++m_aBins[static_cast<size_t>(std::min<uint64_t>(uBin, BINS - 1))];
    ++m_uCount;
}

uint32_t CPressHistogram::GetPercentile(uint32_t uPercent) const {
    const uint64_t uWanted = uint64_t{m_uCount} * uPercent;
    uint64_t uBelow = 0;
    for (uint32_t n = 0; n < BINS; ++n) {
        const uint64_t uHere = uint64_t{m_aBins[n]} * 100;
        if (uHere > 0 && uBelow + uHere >= uWanted)
            return n * BIN + static_cast<uint32_t>((uWanted - uBelow) * BIN / uHere);
        uBelow += uHere;
    }
    return TPenCurve::FULL;
}

std::optional<TPenCurve> CPressHistogram::Fit() const {
    if (m_uCount < ENOUGH) return std::nullopt;
    const uint32_t uLow = GetPercentile(LOWEST), uHigh = GetPercentile(HIGHEST);
    if (uHigh < uLow + NARROWEST) return std::nullopt;
    // The middle of a lopsided hand is not followed all the way, since that would leave a jump at one end.
    const uint32_t uMargin = (uHigh - uLow) / 5;
    return TPenCurve{uLow, std::clamp(GetPercentile(50), uLow + uMargin, uHigh - uMargin), uHigh};
}
