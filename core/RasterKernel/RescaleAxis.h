// The samples of one axis that the pixels of another size read, and their weights.
#pragma once

#include "core/Base/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Taps of every destination pixel of an axis. Tap t of pixel i is at `t * nTo + i`. The indices of a pixel
/// ascend, and so do those of a tap; all are inside the source. Pixels with fewer taps repeat their last
/// index with a weight of 0, which changes no sum.
struct TRescaleAxis {
    int32_t nFrom;
    int32_t nTo;
    size_t nTaps = 0;
    std::vector<int32_t> vIndex;
    std::vector<float> vWeight;
    std::vector<float> vShare; ///< a weight divided by the sum of the pixel's weights
    bool bNoneNegative = true; ///< of the weights

    TRescaleAxis(int32_t nFrom_, int32_t nTo_) : nFrom(nFrom_), nTo(nTo_) {}
    int32_t First(int32_t i) const { return vIndex[static_cast<size_t>(i)]; }
    int32_t Last(int32_t i) const {
        return vIndex[(nTaps - 1) * static_cast<size_t>(nTo) + static_cast<size_t>(i)];
    }
};

/// Both axes of a picture.
struct TRescaleAxes {
    TRescaleAxis across;
    TRescaleAxis down;
};

enum class ERescaleKind {
    Nearest,  ///< the sample at the pixel's centre
    Mean,     ///< whole multiples: all samples that a pixel covers
    Area,     ///< sizes that do not grow: these samples, weighted by the covered part
    Bilinear, ///< two samples around the pixel's centre; the border repeats
    Bicubic   ///< cubic convolution of the samples from 2 before the pixel's centre to 1 behind; the border
              ///< repeats
};

/// Mean where the source's sides are whole multiples of the destination's, else Area. All sides are positive.
ERescaleKind AverageKind(CSize srcSize, CSize destSize);

/// All sides are positive. Raises constraint_violation_as<defect_logic> when the kind cannot make the size.
TRescaleAxes MakeRescaleAxes(ERescaleKind kind, CSize srcSize, CSize destSize);
