// Few marks whose eased values follow given ones along a line: half-widths, or opacities.
#pragma once

#include "core/PathFit/InkFit.h"

#include <optional>

/// A value of the line, at a place where a mark may be set.
struct TEaseSample {
    uint32_t t;
    double dLength; ///< arc length from the line's beginning, not decreasing
    double dValue;  ///< not negative
    double dTolerance;
};

/// How values lead from an end to its first mark: they are the mark's, or rise from 0 as the half-widths of a
/// sharp end. Where an end has a mark already, its value is given.
struct TEaseEnds {
    bool bSharpBegin = false;
    bool bSharpEnd = false;
    std::optional<uint32_t> fixedBegin{};
    std::optional<uint32_t> fixedEnd{};
};

/// Marks of whole values, sorted, at least one; the values between them stay within the tolerances as far as
/// whole values can. Between two marks lie at most 2^26 units of length where
/// there are samples.
std::vector<TFittedMark> FitEase(const std::vector<TEaseSample>& vSamples, TEaseEnds ends);

/// The share of a mark's value at a share of the length from a sharp end to it; both 0 to 1.
double SharpShare(double dLength);
