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
};

/// A curve's parameter beside a point of the way, and their distance.
struct TCurvePlace {
    double t;
    double dError;
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
    /// The places beside the points of a range, with parameters that do not decrease.
    std::vector<TCurvePlace> PlacesOn(const TInkCubic& cubic, const TWayRange& range) const;

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
