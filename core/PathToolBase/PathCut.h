// Stretches of a stroke as strokes of their own, which look as the stroke did there.
#pragma once

#include "core/PathObject/StrokeLine.h"
#include "core/PathToolBase/PathCombine.h"

#include <optional>

/// The shape of an end that a cut makes.
struct TCutEnd {
    EPathTerm type = TERM_ROUND;
    uint32_t uAngle = 90; ///< of a flat one: degrees from the path's direction to the cut, counterclockwise
};

/// The stretch of a stroke between two parameters, the first before the last. Without a value an end is the
/// stroke's own, at its first or last anchor.
struct TKeptStretch {
    uint32_t tFirst = 0;
    uint32_t tLast = 0;
    std::optional<TCutEnd> begin;
    std::optional<TCutEnd> end;
};

/// The stretch as a path in no layer. Half-widths are those of the stroke within two path units: width points
/// are added beside a cut that falls between two, as few as this takes. The wave is made anew, since it
/// follows the anchors. `line` is the path's. Raises refused_error when the outline cannot be built.
TOpenPathPtr CutPath(const COpenPathObject& path, const CStrokeLine& line, const TKeptStretch& stretch);
