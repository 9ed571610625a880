// One side of a stroke: a chain of anchors with handles beside the centre line.
#pragma once

#include "core/PathOutline/Outline.h"

/// A stroke seen along one side: everything in the order in which that side is walked. The right side is
/// walked from the path's end to its start.
struct TSideSource {
    TOutlinePoints vAnchors;
    std::vector<std::pair<uint32_t, uint32_t>> vWidths; ///< `t` and half-width, sorted, at least one
    const IOutlineTerm* pStart;
    const IOutlineTerm* pEnd;
    EPathSide side;
};

/// A side's way through a stroke that has an anchor and a width.
TSideSource SideOf(const TOutlineSource& source, EPathSide side);

/// A piece of a side before corners were joined: its ends and its middle.
struct TSidePiece {
    uint32_t tBegin; ///< in the path's direction, as tEnd
    uint32_t tEnd;
    std::array<TOutlinePoint, 3> aPoints; ///< in the side's direction
    size_t idxMiddle;                     ///< of its middle among the side's points
    /// Halves that run against the centre line, because the stroke is wider than its bend.
    std::array<bool, 2> abFolded;
};

/// One side of a stroke.
struct TSide {
    TOutlinePoints vPoints; ///< at least one
    std::vector<TSidePiece> vPieces;
};

TSide BuildSide(const TSideSource& source);
