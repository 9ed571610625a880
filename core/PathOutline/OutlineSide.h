// One side of a stroke: a chain of anchors with handles beside the centre line.
#pragma once

#include "core/PathOutline/CentreLine.h"
#include "core/PathOutline/OutlineFit.h"
#include "core/PathOutline/OutlineRun.h"

/// A stroke seen along one side: everything in the order in which that side is walked. The right side is
/// walked from the path's end to its start.
struct TSideSource {
    struct TSegment {
        CPoint ptOrigin; ///< its first anchor
        CBezier bez;     ///< relative to it
    };
    std::vector<TSegment> vSegments;
    std::vector<TCentrePiece> vPieces;
    std::vector<std::pair<uint32_t, uint32_t>> vWidths; ///< `t` and half-width, sorted, at least one
    const IOutlineTerm* pStart;
    const IOutlineTerm* pEnd;
    TOutlinePoint first; ///< the first anchor
    EPathSide side;
};

/// The source of one side of a stroke that has an anchor and a width.
TSideSource SideOf(const TOutlineSource& source, const CCentreLine& line,
                   const std::vector<TCentrePiece>& vPieces, EPathSide side);

/// A piece of a side at its place.
struct TSidePiece {
    uint32_t tBegin; ///< in the path's direction, as tEnd
    uint32_t tEnd;
    size_t idxMiddle; ///< of its middle point among the side's
    CPoint ptOrigin;
    const TRunPiece* pPiece; ///< in the side's direction, relative to ptOrigin

    TOutlinePoint GetPoint(size_t n) const;
    /// A point's anchor before a slanted end moved it.
    CPoint GetPlain(size_t n) const { return CheckedAdd(pPiece->aptPlain[n], ptOrigin); }
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

/// Builds a side again and again: runs and corners of the same values as in the build before are taken over.
class CSideBuilder {
public:
    /// The side is valid until the second next call.
    TSide Build(const TSideSource& source);
    /// The runs that the last call built anew.
    size_t CountRuns() const { return m_memoRun.CountMade(); }

private:
    struct TKnownCorner {
        CBezier before;
        CBezier behind;
        TCorner corner;
    };

    const TSideRun& RunOf(size_t idx, const TRunSource& source, TSideEnd* pStart, TSideEnd* pEnd);
    const TCorner& CornerOf(size_t idx, const CBezier& before, const CBezier& behind);
    void Append(TSide& side, const TSideSource& source, size_t idx, const TSideRun& run);

    COutlineMemo<TSideRun> m_memoRun;
    COutlineMemo<TKnownCorner> m_memoCorner;
};
