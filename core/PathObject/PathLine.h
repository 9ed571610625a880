// The interface of an open path for the marks on it.
#pragma once

#include "core/Bezier/Bezier.h"

#include <utility>
#include <vector>

/// A position on a path and its squared distance from the point searched for.
struct TPathPlace {
    uint32_t t;
    int64_t nDistanceSquared;
};

class IPathLine {
public:
    virtual ~IPathLine() = default;
    /// The curves between anchors. A closed path has one more, back to its first anchor, unless its last
    /// anchor is at the same position.
    virtual std::vector<CBezier> GetSegments(size_t state) const = 0;
    /// The first and the last parameter that a mark at `t` of a class (the tag of its stored form) can be
    /// dragged to, limited by its neighbours of that class and the path's ends.
    virtual std::pair<uint32_t, uint32_t> GetMarkRange(uint32_t uMark, uint32_t t, size_t state) const = 0;
};

/// The position nearest to a point on a line given as its segments, at least one. Never throws.
TPathPlace SearchNearOnLine(const std::vector<CBezier>& vSegments, CPoint pt);
