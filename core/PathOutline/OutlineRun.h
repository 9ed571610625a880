// One side of a stroke along one segment of the centre line: a run of pieces. Everything is relative to the
// anchor where the run begins, and in the side's direction.
#pragma once

#include "core/PathOutline/OutlineEnd.h"
#include "core/PathOutline/WidthProfile.h"

#include <optional>
#include <span>

/// A piece before corners are joined: its ends and its middle.
struct TRunPiece {
    uint32_t fBegin;
    uint32_t fEnd;
    CBezier bez;   ///< the centre line
    CBezier width; ///< half-widths over arc lengths
    std::array<TOutlinePoint, 3> aPoints;
    size_t idxMiddle;               ///< of the middle one among the run's points
    std::array<CPoint, 3> aptPlain; ///< their anchors before a slanted end moved them
    /// Halves that run against the centre line, because the stroke is wider than its bend.
    std::array<bool, 2> abFolded;
};

/// All that a run is made of, unless it lies at an end of the stroke.
struct TRunSource {
    CBezier bez;
    std::span<const TWidthPart> parts; ///< the last one ends the segment
};

/// The shape of an end while the side is built. A slanted one moves the side's outermost point.
struct TSideEnd {
    const IOutlineTerm* pTerm;
    std::optional<TEndLine> line; ///< set if the point was moved
    /// The moved point where it lies behind the middle of its piece: the side would turn back to it. It is
    /// not part of the run, which is to be trimmed.
    std::optional<TOutlinePoint> trim;
};

/// A run without a direction has no pieces.
struct TSideRun {
    CBezier bez;
    std::vector<TWidthPart> vParts;
    bool bEnd; ///< shaped by an end, too
    std::vector<TRunPiece> vPieces;
    TOutlinePoints vPoints;
};

/// True for ends of two pieces that are one point of the side.
bool IsSamePlace(const TOutlinePoint& a, const TOutlinePoint& b);

/// `pStart` and `pEnd` are the ends of the side that lie in this segment, or null.
TSideRun BuildRun(const TRunSource& source, TSideEnd* pStart, TSideEnd* pEnd);
