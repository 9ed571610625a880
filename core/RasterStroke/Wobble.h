// The wobble of an unsteady hand: three lists of offsets that follow random targets, one entry for each
// control point.
#pragma once

#include "core/Base/Geometry.h"
#include "core/RasterStroke/CtlPoint.h"

#include <array>
#include <vector>

class CStrokeRandom;
struct TBrushParam;

/// The greatest distance of a new target from the line, in eighths of a canvas pixel, for the radius
/// `uRadius` (8192ths of a canvas pixel): 0 for the thinnest lines, WaveDistMin for thin ones, toward
/// WaveDistMax at the full radius.
uint32_t WobbleDistance(const TBrushParam& param, uint32_t uRadius);

/// A point at a random angle, at most `uDistance` away.
CPoint ChooseWobbleTarget(uint32_t uDistance, CStrokeRandom& random);

class CWobble {
public:
    static constexpr size_t PASSES = 3;
    using TList = std::vector<TCtlPoint>; ///< offsets in x and y, the rest 0

    /// Appends a control point's entry to the lists; without wobble a zero entry to the first list alone.
    void Append(const TBrushParam& param, uint32_t uPressure, uint32_t uRadius, CStrokeRandom& random);
    /// The lists; an empty one makes no pass.
    const std::array<TList, PASSES>& GetLists() const { return m_aLists; }

private:
    std::array<TList, PASSES> m_aLists;
    std::array<CPoint, PASSES> m_aTargets;
};
