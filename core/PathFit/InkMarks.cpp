#include "core/PathFit/InkMarks.h"

#include <algorithm>

namespace {

/// The part of the tolerance that the rounding of width and outline takes, in path units.
constexpr double ROUNDING = 0.5;
/// The part of it that is kept free, as a share.
constexpr double MARGIN = 0.07;
/// A half-width may be off by that and this part of itself: thin lines keep their weight.
constexpr double WIDTH_SHARE = 0.25;
constexpr double ALPHA_TOLERANCE = 3;
/// Marks so near to an anchor, in path units, stand on it.
constexpr double SNAP = 2;

/// Between anchors places nearer to each other, in tolerances, tell nothing new.
constexpr double SPACING = 2;

enum class EValue { Width, Alpha };

// The samples along the curves `nFirst` to `nEnd`.
std::vector<TEaseSample> SamplesOf(const TInkWay& vWay, const std::vector<TCentreCurve>& vCurves,
                                   size_t nFirst, size_t nEnd, double dTolerance, EValue value) {
    std::vector<TEaseSample> vSamples;
    vSamples.reserve(vCurves[nEnd - 1].range.idxLast - vCurves[nFirst].range.idxFirst + 1);
    const bool bAlpha = value == EValue::Alpha;
    double dBegin = 0, dLast = 0;
    for (size_t n = nFirst; n < nEnd; ++n) {
        const auto& [cubic, range] = vCurves[n];
        CCurvePlaces places(cubic, vWay, range);
        const CCurveLength& length = places.GetLength();
        const size_t idxEnd = range.idxFirst < range.idxLast ? range.idxLast : 0;
        for (size_t i = range.idxFirst + (n == nFirst ? 0 : 1); i <= idxEnd; ++i) {
            const TWayPoint& point = vWay[i];
            const bool bInside = i > range.idxFirst && i < range.idxLast;
            if (bInside && point.dLength - dLast < SPACING * dTolerance) continue;
            dLast = point.dLength;
            const auto [tPlace, dError] = places.Next(i);
            double dLength = length.At(tPlace), t = tPlace;
            if (i == range.idxFirst || dLength < SNAP) dLength = t = 0;
            if (i == range.idxLast || dLength > length.All() - SNAP) dLength = length.All(), t = 1;
            const double dOff =
                point.dShare * std::min((1 - MARGIN) * dTolerance - ROUNDING - point.dOff - dError,
                                        ROUNDING + WIDTH_SHARE * point.dHalf);
            vSamples.push_back({static_cast<uint32_t>(n) * BEZIER_T_RESOLUTION +
                                    static_cast<uint32_t>(t * BEZIER_T_RESOLUTION),
                                dBegin + dLength, bAlpha ? point.dAlpha : point.GetWide(),
                                bAlpha ? ALPHA_TOLERANCE : std::max(dOff, ROUNDING)});
        }
        dBegin += length.All();
    }
    return vSamples;
}

// Tells which marks of the last fit stay.
class CKept {
public:
    CKept(const TInkWay& vWay, const std::vector<TCentreCurve>& vCurves,
          const std::vector<TCentreCurve>& vLast, const std::vector<size_t>& vTight, double dReach)
        : m_vWay(vWay), m_vCurves(vCurves), m_vTight(vTight), m_dReach(dReach) {
        MatchCurves(vLast);
    }
    // Those of the last marks that stay, by their places among the new curves.
    std::vector<TFittedMark> KeptOf(const std::vector<TFittedMark>& vLast) const {
        std::vector<TFittedMark> vKept;
        for (const TFittedMark& mark : vLast)
            if (const auto t = PlaceOf(mark.t); t && !IsTight(*t, *t)) vKept.push_back({*t, mark.uValue});
        return vKept;
    }
    // True when the widths between two marks can stay: no curve there is new, and no point tight.
    bool CanStay(uint32_t tFirst, uint32_t tLast) const {
        for (size_t n = tFirst / BEZIER_T_RESOLUTION; n * BEZIER_T_RESOLUTION < tLast; ++n)
            if (m_vNew[n]) return false;
        return !IsTight(tFirst, tLast);
    }

private:
    void MatchCurves(const std::vector<TCentreCurve>& vLast) {
        m_vNew.assign(m_vCurves.size(), true);
        m_vnNow.assign(vLast.size(), NONE);
        const auto isBefore = [](const TCentreCurve& a, const TCentreCurve& b) {
            return a.range.idxLast != b.range.idxLast ? a.range.idxLast < b.range.idxLast
                                                      : a.range.idxFirst < b.range.idxFirst;
        };
        for (size_t n = 0, k = 0; n < m_vCurves.size() && k < vLast.size();) {
            if (m_vCurves[n] == vLast[k]) {
                m_vNew[n] = false;
                m_vnNow[k++] = n++;
            } else if (isBefore(m_vCurves[n], vLast[k])) {
                ++n;
            } else {
                ++k;
            }
        }
    }
    // Of a mark of the last fit, when a curve beside it has stayed.
    std::optional<uint32_t> PlaceOf(uint32_t t) const {
        const size_t n = t / BEZIER_T_RESOLUTION;
        const uint32_t tCurve = t % BEZIER_T_RESOLUTION;
        if (n < m_vnNow.size() && m_vnNow[n] != NONE)
            return static_cast<uint32_t>(m_vnNow[n]) * BEZIER_T_RESOLUTION + tCurve;
        if (tCurve == 0 && n > 0 && m_vnNow[n - 1] != NONE)
            return static_cast<uint32_t>(m_vnNow[n - 1] + 1) * BEZIER_T_RESOLUTION;
        return {};
    }
    // Of the way beside a place, nearly.
    double LengthAt(uint32_t t) const {
        const size_t n = std::min<size_t>(t / BEZIER_T_RESOLUTION, m_vCurves.size() - 1);
        const double dPart = static_cast<double>(t) / BEZIER_T_RESOLUTION - static_cast<double>(n);
        const auto& range = m_vCurves[n].range;
        const double dFirst = m_vWay[range.idxFirst].dLength;
        return dFirst + (m_vWay[range.idxLast].dLength - dFirst) * dPart;
    }
    bool IsTight(uint32_t tFirst, uint32_t tLast) const {
        const double dFirst = LengthAt(tFirst) - m_dReach, dLast = LengthAt(tLast) + m_dReach;
        const auto it =
            std::ranges::lower_bound(m_vTight, dFirst, {}, [&](size_t idx) { return m_vWay[idx].dLength; });
        return it != m_vTight.end() && m_vWay[*it].dLength <= dLast;
    }

    static constexpr size_t NONE = static_cast<size_t>(-1);
    const TInkWay& m_vWay;
    const std::vector<TCentreCurve>& m_vCurves;
    const std::vector<size_t>& m_vTight;
    double m_dReach;
    std::vector<bool> m_vNew;    ///< by the new curves
    std::vector<size_t> m_vnNow; ///< the new numbers of the last curves
};

} // namespace

void CInkWidths::Fit(const std::vector<TCentreCurve>& vCurves, TEaseEnds ends) {
    m_vMarks = FitEase(SamplesOf(m_vWay, vCurves, 0, vCurves.size(), m_dTolerance, EValue::Width), ends);
    m_vCurves = vCurves;
    m_ends = ends;
}

bool CInkWidths::Refit(const std::vector<TCentreCurve>& vCurves, TEaseEnds ends,
                       const std::vector<size_t>& vTight, double dReach) {
    const CKept kept(m_vWay, vCurves, m_vCurves, vTight, dReach);
    const std::vector<TFittedMark> vKept = kept.KeptOf(m_vMarks);
    const auto tEnd = static_cast<uint32_t>(vCurves.size()) * BEZIER_T_RESOLUTION;
    std::vector<TFittedMark> vMarks;
    // Between each kept mark and the next, before the first and behind the last.
    for (size_t n = 0; n <= vKept.size(); ++n) {
        const bool bFirst = n == 0, bLast = n == vKept.size();
        const uint32_t tFrom = bFirst ? 0 : vKept[n - 1].t, tTo = bLast ? tEnd : vKept[n].t;
        if (!bFirst) vMarks.push_back(vKept[n - 1]);
        const bool bOtherEnd = (bFirst && ends.bSharpBegin != m_ends.bSharpBegin) ||
                               (bLast && ends.bSharpEnd != m_ends.bSharpEnd);
        if (!bOtherEnd && kept.CanStay(tFrom, tTo)) continue;
        TEaseEnds part = ends;
        if (!bFirst) part.fixedBegin = vKept[n - 1].uValue;
        if (!bLast) part.fixedEnd = vKept[n].uValue;
        // A mark on an anchor stands on the curve before it, as the sample does.
        const size_t nFirst = tFrom > 0 ? (tFrom - 1) / BEZIER_T_RESOLUTION : 0;
        const size_t nEnd =
            std::max<size_t>((tTo + BEZIER_T_RESOLUTION - 1) / BEZIER_T_RESOLUTION, nFirst + 1);
        auto vSamples = SamplesOf(m_vWay, vCurves, nFirst, nEnd, m_dTolerance, EValue::Width);
        std::erase_if(vSamples,
                      [&](const TEaseSample& sample) { return sample.t < tFrom || sample.t > tTo; });
        for (const TFittedMark& mark : FitEase(vSamples, part))
            if ((bFirst || mark.t > tFrom) && (bLast || mark.t < tTo)) vMarks.push_back(mark);
    }
    const bool bChanged =
        vMarks != m_vMarks || ends.bSharpBegin != m_ends.bSharpBegin || ends.bSharpEnd != m_ends.bSharpEnd;
    m_vMarks = std::move(vMarks);
    m_vCurves = vCurves;
    m_ends = ends;
    return bChanged;
}

std::vector<TFittedMark> FitOpacities(const TInkWay& vWay, const std::vector<TCentreCurve>& vCurves,
                                      double dTolerance) {
    const double dAlpha = vWay.front().dAlpha;
    if (std::ranges::all_of(vWay, [&](const TWayPoint& point) { return point.dAlpha == dAlpha; }))
        return {{0, static_cast<uint32_t>(Nearest(dAlpha))}};
    return FitEase(SamplesOf(vWay, vCurves, 0, vCurves.size(), dTolerance, EValue::Alpha), {});
}
