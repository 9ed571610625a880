// One cubic curve through a stretch of a way: least squares of its handles' lengths, after Schneider ("An
// algorithm for automatically fitting digitized curves", 1990).
#pragma once

#include "core/PathFit/InkWay.h"

#include <array>
#include <optional>

/// A cubic curve.
struct TInkCubic {
    TInkVector p0;
    TInkVector p1;
    TInkVector p2;
    TInkVector p3;

    TInkVector At(double t) const;
    /// The first derivative.
    TInkVector SlopeAt(double t) const;

    friend bool operator==(const TInkCubic&, const TInkCubic&) = default;
};

/// A cubic curve by the powers of its parameter, quick to evaluate at many places.
struct TInkPowers {
    explicit TInkPowers(const TInkCubic& cubic);

    TInkVector At(double t) const { return c0 + (c1 + (c2 + c3 * t) * t) * t; }
    /// The parameter of a place nearer to the point, by one of Newton's steps.
    double Nearer(TInkVector pt, double t) const {
        const TInkVector away = At(t) - pt;
        const TInkVector slope = c1 + (c2 * 2 + c3 * (3 * t)) * t;
        const TInkVector bend = c2 * 2 + c3 * (6 * t);
        const double dSquare = Dot(slope, slope);
        const double dDivisor = dSquare + Dot(away, bend);
        // Beyond the centre of the curve's bend the step would lead away.
        const double dStep = Dot(away, slope) / std::max(dDivisor, dSquare / 4);
        return dSquare > 0 ? std::clamp(t - dStep, 0.0, 1.0) : t;
    }

    TInkVector c0, c1, c2, c3;
};

/// The length of a cubic curve from its beginning to a parameter, by 16 chords.
class CCurveLength {
public:
    explicit CCurveLength(const TInkCubic& cubic);

    double All() const { return m_adLength.back(); }
    double At(double t) const;
    /// The parameter at a length of 0 to All().
    double ParameterAt(double dLength) const;

private:
    static constexpr size_t CHORDS = 16;
    std::array<double, CHORDS + 1> m_adLength{}; ///< to the end of each chord
};

/// A handle of whole path units that a path can hold, of nearly a length; a short one rather keeps its
/// direction.
TInkVector HandleOf(TInkVector direction, double dLength);

/// An end of a curve: a place of whole path units, and the unit direction in which the curve leaves it.
struct TCurveEnd {
    TInkVector pt;
    TInkVector direction;
};

/// The points of a way that a curve stands for.
struct TWayRange {
    size_t idxFirst;
    size_t idxLast;
    /// Points nearer than this to an end of the curve need not lie beside it, as at a corner.
    double dFreeFirst = 0;
    double dFreeLast = 0;

    friend bool operator==(const TWayRange&, const TWayRange&) = default;
};

/// A curve's parameter beside a point of the way, and their distance.
struct TCurvePlace {
    double t;
    double dError;
};

/// The places of a curve beside the points of a way that it stands for; the way must outlive it.
class CCurvePlaces {
public:
    CCurvePlaces(const TInkCubic& cubic, const TInkWay& vWay, const TWayRange& range);

    /// The place beside a point of the range. Parameters do not decrease from call to call.
    TCurvePlace Next(size_t idx);
    const CCurveLength& GetLength() const { return m_length; }

private:
    TInkPowers m_powers;
    CCurveLength m_length;
    const TInkWay& m_vWay;
    double m_dBegin;
    double m_dAll;
    double m_dLast = 0;
};

/// Fits curves to stretches of one way, which it must not outlive.
class CCurveFit {
public:
    explicit CCurveFit(const TInkWay& vWay) : m_vWay(vWay) {}

    /// The curve between two ends, its points whole path units. Nullopt when a point of the range is farther
    /// than `dTolerance` from it.
    std::optional<TInkCubic> Fit(const TWayRange& range, const TCurveEnd& from, const TCurveEnd& to,
                                 double dTolerance);
    /// The same, whatever the distance.
    TInkCubic FitAtAll(const TWayRange& range, const TCurveEnd& from, const TCurveEnd& to);

private:
    struct TSample {
        size_t idx;
        double t;
    };

    void TakeSamples(const TWayRange& range);
    TInkCubic Solve(const TWayRange& range, const TCurveEnd& from, const TCurveEnd& to) const;
    double Refine(const TInkCubic& cubic, const TWayRange& range);
    // Whether each point of the range is a sample.
    bool HasAllPoints(const TWayRange& range) const {
        return m_vSamples.size() > range.idxLast - range.idxFirst;
    }
    bool IsWithin(const TInkCubic& cubic, const TWayRange& range, double dTolerance) const;

    const TInkWay& m_vWay;
    std::vector<TSample> m_vSamples; ///< of the present range
};
