// The unsteady hand: three lists of offsets that follow random targets, one control point after the other.
#pragma once

#include "core/Base/Geometry.h"
#include "core/RasterStroke/CtlPoint.h"

#include <array>
#include <vector>

class CStrokeRandom;
struct TBrushParam;

/// How far a new target may lie off the line, in eighths of a canvas pixel, where the pen's pressure gives
/// `uRadius` (8192ths of a canvas pixel): nothing for the thinnest lines, WaveDistMin for thin ones, toward
/// WaveDistMax at the full radius.
uint32_t WobbleDistance(const TBrushParam& param, uint32_t uRadius);

/// A point at a random angle and at most `uDistance` away.
CPoint ChooseWobbleTarget(uint32_t uDistance, CStrokeRandom& random);

class CWobble {
public:
    static constexpr size_t PASSES = 3;
    using TList = std::vector<TCtlPoint>; ///< offsets in x and y, the rest 0

    /// Adds the entry of a control point to the lists: one entry 0 to the first alone without wobble.
    void Append(const TBrushParam& param, uint32_t uPressure, uint32_t uRadius, CStrokeRandom& random);
    /// The lists; one that is empty makes no pass.
    const std::array<TList, PASSES>& GetLists() const { return m_aLists; }

private:
    std::array<TList, PASSES> m_aLists;
    std::array<CPoint, PASSES> m_aTargets;
};
