// One side of a stroke: a chain of anchors with handles beside the centre line.
#pragma once

#include "core/PathOutline/OutlineEnd.h"

#include <optional>

/// A stroke seen along one side: everything in the order in which that side is walked. The right side is
/// walked from the path's end to its start.
struct TSideSource {
    TOutlinePoints vAnchors;
    std::vector<std::pair<uint32_t, uint32_t>> vWidths; ///< `t` and half-width, sorted, at least one
    const IOutlineTerm* pStart;
    const IOutlineTerm* pEnd;
    EPathSide side;
};

/// The source of one side of a stroke that has an anchor and a width.
TSideSource SideOf(const TOutlineSource& source, EPathSide side);

/// A piece of a side before corners were joined: its ends and its middle.
struct TSidePiece {
    uint32_t tBegin; ///< in the path's direction, as tEnd
    uint32_t tEnd;
    CBezier bez;   ///< the centre line, in the side's direction as all that follows
    CBezier width; ///< half-widths over arc lengths
    std::array<TOutlinePoint, 3> aPoints;
    size_t idxMiddle;               ///< of the middle one among the side's points
    std::array<CPoint, 3> aptPlain; ///< their anchors before a slanted end moved them
    /// Halves that run against the centre line, because the stroke is wider than its bend.
    std::array<bool, 2> abFolded;
};

/// An anchor where a side jumps and does not cross itself on the way: the end of one piece, a mitre if
/// there is one, the beginning of the next.
struct TSideCorner {
    uint32_t tBegin; ///< in the path's direction
    uint32_t tEnd;   ///< the same
    TOutlinePoints vPoints;
};

/// One side of a stroke.
struct TSide {
    TOutlinePoints vPoints; ///< at least one
    std::vector<TSidePiece> vPieces;
    std::vector<TSideCorner> vCorners;
    std::optional<TEndLine> startLine; ///< of an end that is cut at a slant
    std::optional<TEndLine> endLine;
};

TSide BuildSide(const TSideSource& source);
