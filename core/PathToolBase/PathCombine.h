// Paths made of others: connected, joined, divided. The given paths are not changed; the new ones are in no
// layer.
#pragma once

#include "core/PathObject/PathObjects.h"
#include "core/PathToolBase/PathParam.h"

#include <utility>

using TOpenPathPtr = boost::shared_ptr<COpenPathObject>;

/// One end of an open path.
struct TPathEnd {
    TOpenPathPtr spPath;
    bool bFirst = false; ///< the end at its first anchor
};

/// A path with the anchors of `drawn` and, behind its last one, those of the other path from that end on:
/// reversed where it is its last one. Width and wave are those of `drawn`, the outer ends keep their shapes,
/// marks their absolute widths. A width of 0, which marks cannot be multiples of, gives way to the other's.
TOpenPathPtr ConnectPaths(const COpenPathObject& drawn, const TPathEnd& other);

/// A path whose two parts share one anchor, at the place of the target's end: each keeps its own handle
/// there. Direction, width and wave are those of the dragged path.
TOpenPathPtr JoinPaths(const TPathEnd& dragged, const TPathEnd& target);

/// The two halves at an inner anchor, each with a sharp end there.
std::pair<TOpenPathPtr, TOpenPathPtr> DividePath(const COpenPathObject& path, size_t idx);

/// The closed path as a stroke that begins and ends at an anchor.
TOpenPathPtr OpenClosedPath(const CClosedPathObject& path, size_t idx, const TPathParam& param);
