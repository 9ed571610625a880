// From the line as it was drawn to a stroke with few anchors and width points.
#pragma once

#include "core/Base/Geometry.h"
#include "core/PathFit/InkLine.h"
#include "core/PathObject/PathObjects.h"

#include <span>

/// An anchor of the centre line; the handles are relative to it, zero for none.
struct TFittedAnchor {
    CPoint pt;
    CPoint ptBack;
    CPoint ptFore;
};

/// A value at the path's parameter `t` (16.16, anchors at whole numbers): a half-width in path units or an
/// opacity of 0 to 255. Between two marks values are eased over the arc length, before the first and behind
/// the last they are constant, but for widths towards a sharp end.
struct TFittedMark {
    uint32_t t;
    uint32_t uValue;

    friend bool operator==(const TFittedMark&, const TFittedMark&) = default;
};

struct TFittedEnd {
    EPathTerm type = TERM_ROUND;
    uint32_t uGrow = FIXED_ONE; ///< of a round end, 16.16
};

/// A stroke that was fitted to a line.
struct TFittedInk {
    std::vector<TFittedAnchor> vAnchors; ///< none for a line of which nothing can be seen
    uint32_t uWidth = 1;                 ///< base half-width
    std::vector<TFittedMark> vWidths;    ///< sorted by `t`; empty for a constant width
    std::vector<TFittedMark> vAlphas;    ///< sorted by `t`; at least one when there is an anchor
    TFittedEnd begin;
    TFittedEnd end;
};

/// The smallest and the largest tolerance that is kept, in path units; others count as these.
constexpr double LEAST_INK_TOLERANCE = 1.6;
constexpr double MOST_INK_TOLERANCE = 64;

/// Fits a stroke whose outline is nowhere farther than `dTolerance` path units from that of the drawn line,
/// the area that the discs sweep, as far as whole path units allow it. Coordinates and radii beyond those
/// that a path can hold are clamped. The same line gives the same stroke on every machine.
TFittedInk FitInk(std::span<const TInkDisc> vLine, double dTolerance);

/// The path of a fitted stroke, updated; without anchors for a stroke without them, and without opacity marks
/// for one that is opaque. `spBuilder` may have built strokes that are nearly the same.
boost::shared_ptr<COpenPathObject> MakeInkPath(const TFittedInk& ink,
                                               const boost::shared_ptr<COutlineBuilder>& spBuilder = {});

/// The path of the stroke that FitInk fits, updated; null for a line of which nothing can be seen.
boost::shared_ptr<COpenPathObject> FitInkPath(std::span<const TInkDisc> vLine, double dTolerance);

/// The path of a stroke with an anchor at every place of the line, of which it leaves out some of long lines:
/// rough, but it takes little time and memory. Null for a line of which nothing can be seen.
boost::shared_ptr<COpenPathObject> MakeRoughInkPath(std::span<const TInkDisc> vLine);

/// Adds the opacity marks to a path unless all are opaque. True when it did: the path is to be updated.
bool AddOpacities(COpenPathStream& stream, const std::vector<TFittedMark>& vAlphas);
