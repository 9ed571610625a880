// What the marks of an open path ask of the path that they stand on.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>
#include <utility>

/// A place on a path and its squared distance from the point that was looked for.
struct TPathPlace {
    uint32_t t;
    int64_t nDistanceSquared;
};

class IPathLine {
public:
    virtual ~IPathLine() = default;
    /// The place nearest to a point; raises internal_error for a path without anchors.
    virtual TPathPlace SearchNearPointOnPath(CPoint pt, size_t state) const = 0;
    /// The parameters of the width points around `t`, those at `t` left out; the path's ends where there is
    /// none.
    virtual std::pair<uint32_t, uint32_t> GetWidthNeighbours(uint32_t t, size_t state) const = 0;
};
