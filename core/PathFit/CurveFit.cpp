#include "core/PathFit/CurveFit.h"

#include <algorithm>

namespace {

/// Points of a stretch that the handles are fitted to: more change little.
constexpr size_t MOST_SAMPLES = 32;
constexpr int ROUNDS = 4;
/// Steps from a guess to the nearest place of a curve.
constexpr int NEARER = 3;
/// An error so many times the tolerance does not come below it by better parameters.
constexpr double HOPELESS = 6;

bool IsFree(const TWayRange& range, const TInkCubic& cubic, TInkVector pt) {
    return LengthOf(pt - cubic.p0) < range.dFreeFirst || LengthOf(pt - cubic.p3) < range.dFreeLast;
}

// Whole path units, but for -1, which cannot be stored.
double Storable(double d) {
    const double dWhole = Nearest(d);
    return dWhole == -1 ? (d < -1 ? -2 : 0) : dWhole;
}

} // namespace

TInkVector HandleOf(TInkVector direction, double dLength) {
    // The shorter a handle, the coarser its directions, but the less its length matters.
    constexpr double SHORT = 8;
    constexpr int TRIES = 6;
    TInkVector best{Storable(direction.x * dLength), Storable(direction.y * dLength)};
    if (dLength >= SHORT) return best;
    double dBest = -1;
    for (int n = 0; n <= TRIES; ++n) {
        const double d = std::max(dLength * (0.7 + 0.6 * n / TRIES), 1.0 + 0.25 * n);
        const TInkVector handle{Storable(direction.x * d), Storable(direction.y * d)};
        const double dCos = Dot(UnitOf(handle, {}), direction);
        if (dCos <= dBest) continue;
        dBest = dCos;
        best = handle;
    }
    return best;
}

TInkVector TInkCubic::At(double t) const {
    const double s = 1 - t;
    return p0 * (s * s * s) + p1 * (3 * s * s * t) + p2 * (3 * s * t * t) + p3 * (t * t * t);
}

TInkVector TInkCubic::SlopeAt(double t) const {
    const double s = 1 - t;
    return (p1 - p0) * (3 * s * s) + (p2 - p1) * (6 * s * t) + (p3 - p2) * (3 * t * t);
}

TInkPowers::TInkPowers(const TInkCubic& cubic)
    : c0(cubic.p0), c1((cubic.p1 - cubic.p0) * 3), c2((cubic.p2 - cubic.p1 * 2 + cubic.p0) * 3),
      c3(cubic.p3 - cubic.p0 + (cubic.p1 - cubic.p2) * 3) {}

CCurveLength::CCurveLength(const TInkCubic& cubic) {
    const TInkPowers powers(cubic);
    TInkVector ptLast = cubic.p0;
    for (size_t n = 1; n <= CHORDS; ++n) {
        const TInkVector pt = powers.At(static_cast<double>(n) / CHORDS);
        m_adLength[n] = m_adLength[n - 1] + LengthOf(pt - ptLast);
        ptLast = pt;
    }
}

double CCurveLength::At(double t) const {
    const auto n = std::min(static_cast<size_t>(t * CHORDS), CHORDS - 1);
    return m_adLength[n] + (m_adLength[n + 1] - m_adLength[n]) * (t * CHORDS - static_cast<double>(n));
}

double CCurveLength::ParameterAt(double dLength) const {
    const auto itEnd = std::lower_bound(m_adLength.begin() + 1, m_adLength.end() - 1, dLength);
    const double dBefore = *(itEnd - 1), dChord = *itEnd - dBefore;
    return (static_cast<double>(itEnd - m_adLength.begin() - 1) +
            (dChord > 0 ? (dLength - dBefore) / dChord : 0)) /
           CHORDS;
}

CCurvePlaces::CCurvePlaces(const TInkCubic& cubic, const TInkWay& vWay, const TWayRange& range)
    : m_powers(cubic), m_length(cubic), m_vWay(vWay), m_dBegin(vWay[range.idxFirst].dLength),
      m_dAll(vWay[range.idxLast].dLength - m_dBegin) {}

TCurvePlace CCurvePlaces::Next(size_t idx) {
    // By the way's own length, then towards the nearest place.
    const double dPart = m_dAll > 0 ? (m_vWay[idx].dLength - m_dBegin) / m_dAll : 0.5;
    double t = m_length.ParameterAt(dPart * m_length.All());
    for (int nStep = 0; nStep < NEARER; ++nStep) t = m_powers.Nearer(m_vWay[idx].pt, t);
    m_dLast = std::max(m_dLast, t);
    return {m_dLast, LengthOf(m_powers.At(m_dLast) - m_vWay[idx].pt)};
}

void CCurveFit::TakeSamples(const TWayRange& range) {
    const size_t nSteps = range.idxLast - range.idxFirst;
    const size_t nSamples = std::min(nSteps, MOST_SAMPLES);
    const double dBegin = m_vWay[range.idxFirst].dLength;
    const double dAll = m_vWay[range.idxLast].dLength - dBegin;
    m_vSamples.clear();
    for (size_t n = 0; n <= nSamples; ++n) {
        const size_t idx = range.idxFirst + (nSamples == 0 ? 0 : n * nSteps / nSamples);
        m_vSamples.push_back({idx, dAll > 0 ? (m_vWay[idx].dLength - dBegin) / dAll : 0});
    }
}

TInkCubic CCurveFit::Solve(const TWayRange& range, const TCurveEnd& from, const TCurveEnd& to) const {
    const double dAll = m_vWay[range.idxLast].dLength - m_vWay[range.idxFirst].dLength;
    double d11 = 0, d12 = 0, d22 = 0, d1 = 0, d2 = 0;
    for (const auto& [idx, t] : m_vSamples) {
        const double s = 1 - t;
        const double b1 = 3 * s * s * t, b2 = 3 * s * t * t;
        const TInkVector rest = m_vWay[idx].pt - from.pt * (s * s * s + b1) - to.pt * (t * t * t + b2);
        const TInkVector a1 = from.direction * b1, a2 = to.direction * b2;
        d11 += Dot(a1, a1);
        d12 += Dot(a1, a2);
        d22 += Dot(a2, a2);
        d1 += Dot(rest, a1);
        d2 += Dot(rest, a2);
    }
    const double dChord = LengthOf(to.pt - from.pt);
    const double dLeast = dChord / 20, dMost = std::max(dAll, dChord);
    const double dDivisor = d11 * d22 - d12 * d12;
    double dFore = dChord / 3, dBack = dChord / 3;
    if (dDivisor > 1e-9 * d11 * d22) {
        dFore = (d1 * d22 - d2 * d12) / dDivisor;
        dBack = (d11 * d2 - d12 * d1) / dDivisor;
    }
    // A handle without a sensible length is clamped, and the other one is fitted alone.
    if (!(dFore >= dLeast && dFore <= dMost)) {
        dFore = std::clamp(dFore, dLeast, dMost);
        if (d22 > 0) dBack = (d2 - d12 * dFore) / d22;
    } else if (!(dBack >= dLeast && dBack <= dMost)) {
        dBack = std::clamp(dBack, dLeast, dMost);
        if (d11 > 0) dFore = (d1 - d12 * dBack) / d11;
    }
    dFore = std::clamp(dFore, dLeast, dMost);
    dBack = std::clamp(dBack, dLeast, dMost);
    return {from.pt, from.pt + HandleOf(from.direction, dFore), to.pt + HandleOf(to.direction, dBack), to.pt};
}

// Better parameters for the samples; returns the largest distance.
double CCurveFit::Refine(const TInkCubic& cubic, const TWayRange& range) {
    const TInkPowers powers(cubic);
    double dMostSquare = 0;
    for (TSample& sample : m_vSamples) {
        const TInkVector pt = m_vWay[sample.idx].pt;
        sample.t = powers.Nearer(pt, sample.t);
        const TInkVector away = powers.At(sample.t) - pt;
        if (const double dSquare = Dot(away, away); dSquare > dMostSquare && !IsFree(range, cubic, pt))
            dMostSquare = dSquare;
    }
    return std::sqrt(dMostSquare);
}

bool CCurveFit::IsWithin(const TInkCubic& cubic, const TWayRange& range, double dTolerance) const {
    const TInkPowers powers(cubic);
    const auto isNear = [&](TInkVector pt, double t) {
        for (int nRound = 0; nRound <= NEARER; ++nRound) {
            const TInkVector away = powers.At(t) - pt;
            if (Dot(away, away) <= dTolerance * dTolerance) return true;
            t = powers.Nearer(pt, t);
        }
        return IsFree(range, cubic, pt);
    };
    // The samples' parameters lead to those between them.
    for (size_t n = 1; n < m_vSamples.size(); ++n) {
        const auto& [idxFrom, tFrom] = m_vSamples[n - 1];
        const auto& [idxTo, tTo] = m_vSamples[n];
        const double dFrom = m_vWay[idxFrom].dLength, dLength = m_vWay[idxTo].dLength - dFrom;
        const double dStep = dLength > 0 ? (tTo - tFrom) / dLength : 0;
        for (size_t idx = idxFrom; idx < idxTo; ++idx)
            if (!isNear(m_vWay[idx].pt, tFrom + (m_vWay[idx].dLength - dFrom) * dStep)) return false;
    }
    return isNear(m_vWay[range.idxLast].pt, 1);
}

std::optional<TInkCubic> CCurveFit::Fit(const TWayRange& range, const TCurveEnd& from, const TCurveEnd& to,
                                        double dTolerance) {
    TakeSamples(range);
    double dLast = HOPELESS * dTolerance;
    for (int nRound = 0; nRound < ROUNDS; ++nRound) {
        const TInkCubic cubic = Solve(range, from, to);
        const double dError = Refine(cubic, range);
        if (dError > HOPELESS * dTolerance) return {};
        if (dError <= dTolerance && (HasAllPoints(range) || IsWithin(cubic, range, dTolerance))) return cubic;
        // Later rounds improve a curve hardly more than this one.
        if (nRound > 0 && dError - 2 * std::abs(dLast - dError) * (ROUNDS - 1 - nRound) > dTolerance)
            return {};
        dLast = dError;
    }
    return {};
}

TInkCubic CCurveFit::FitAtAll(const TWayRange& range, const TCurveEnd& from, const TCurveEnd& to) {
    TakeSamples(range);
    return Solve(range, from, to);
}
