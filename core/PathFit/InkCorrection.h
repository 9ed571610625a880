// Corrects a pen stroke afterwards: the path is made anew from the hand's samples.
#pragma once

#include "core/PathObject/PathObjects.h"

#include <optional>
#include <vector>

/// Path units in a hundredth of a canvas pixel, the unit of TInkSamples::uTolerance.
constexpr double UNITS_OF_HUNDREDTH = 0.08;

/// The values that panes offer for smoothing and tolerance.
inline const std::vector<int> SMOOTHING_STOPS{0, 1, 2, 3, 4, 6, 8, 12, 16, 24};
inline const std::vector<int> TOLERANCE_STOPS{20, 35, 50, 75, 100, 150, 200, 300, 400, 600, 800};

/// Values to be changed.
struct TInkCorrection {
    std::optional<uint8_t> uSmoothing;  ///< TBrushParam::CurveStrength
    std::optional<uint32_t> uTolerance; ///< TInkSamples::uTolerance
};

/// The path of a pen stroke, with its samples; null when nothing of it can be seen.
boost::shared_ptr<COpenPathObject> MakeInk(const TInkSamples& samples);

/// The same, but where there is no memory for the fit, the path is rough: a new line is not lost, and
/// CorrectInk can fit it later.
boost::shared_ptr<COpenPathObject> MakeInkOrRough(const TInkSamples& samples);

/// Gives a stroke the shape that its samples make with these values. Its wave and flat ends stay, and so does
/// the factor by which the user has changed its width. Strokes without samples are not changed, and neither
/// are strokes of which nothing would be seen. The caller updates the path.
void CorrectInk(COpenPathStream& stream, const TInkCorrection& correction);
