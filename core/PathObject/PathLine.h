// What the marks of an open path ask of the path that they stand on.
#pragma once

#include "core/Bezier/Bezier.h"

#include <utility>
#include <vector>

/// A place on a path and its squared distance from the point that was looked for.
struct TPathPlace {
    uint32_t t;
    int64_t nDistanceSquared;
};

class IPathLine {
public:
    virtual ~IPathLine() = default;
    /// The curves between anchors. A closed path has one more, back to its first anchor, unless its last one
    /// lies there already.
    virtual std::vector<CBezier> GetSegments(size_t state) const = 0;
    /// The first and the last parameter that a width point at `t` can be dragged to: it stops before its
    /// neighbours and at the path's ends.
    virtual std::pair<uint32_t, uint32_t> GetWidthRange(uint32_t t, size_t state) const = 0;
};

/// The place of a line, held as its segments, at least one, that is nearest to a point. Throws nothing.
TPathPlace SearchNearOnLine(const std::vector<CBezier>& vSegments, CPoint pt);
