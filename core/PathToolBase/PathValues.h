// The committed values of open paths, taken apart to make other paths of them.
#pragma once

#include "core/PathToolBase/PathCombine.h"

struct TWidthMark {
    uint32_t t;
    std::array<uint32_t, 2> auMultiple; ///< of the base width, by side
};

struct TCutMark {
    uint32_t t;
    uint32_t uAngle;
};

struct TAlphaMark {
    uint32_t t;
    uint32_t uAlpha;
};

struct TTermValue {
    boost::shared_ptr<const COpenPathTermBase> spTerm; ///< null for a sharp one
    bool bReversed = false;
};

/// The committed values of an open path.
struct TPathValues {
    TOutlinePoints vAnchors;
    std::vector<TWidthMark> vWidths; ///< sorted
    std::vector<TCutMark> vCuts;     ///< sorted, in pairs
    std::vector<TAlphaMark> vAlphas; ///< sorted
    uint32_t uWidth = 0;
    TTermValue begin;
    TTermValue end;

    /// The parameter of the last anchor.
    uint32_t GetEnd() const { return static_cast<uint32_t>(vAnchors.size() - 1) * BEZIER_T_RESOLUTION; }
};

TPathValues ValuesOf(const COpenPathStream& stream);

/// The same stroke in the other direction. A cut's angle is that of its line, which stays.
TPathValues Reversed(TPathValues values);

/// A new end of the same shape.
boost::shared_ptr<COpenPathTermBase> CopyTerm(const TTermValue& term, bool bBegin);

void AddAnchors(COpenPathStream& stream, const TOutlinePoints& vAnchors);

/// A path of these values, with another one's wave. Raises refused_error when its outline cannot be built.
TOpenPathPtr MakePath(const TPathValues& values, const COpenPathStream& wave);

/// A stretch of a path between two parameters, the first before the last, as a path of its own.
struct TPathStretch {
    TPathStretch(uint32_t tFirst, uint32_t tLast);
    /// The parameter in the stretch of one that lies in it.
    uint32_t Map(uint32_t t) const;

    uint32_t nFirst; ///< anchor at or before the first parameter
    uint32_t nLast;  ///< anchor at or behind the last one
    uint32_t fFirst; ///< fraction of the first segment
    uint32_t fLast;  ///< fraction of the last one, not 0
};

/// The stretch between two parameters, the first before the last, with the marks on it and sharp ends.
/// Between anchors the curve is split there.
TPathValues PartOf(const TPathValues& whole, uint32_t tFirst, uint32_t tLast);
