// Boxes of what tools draw over the canvas.
#pragma once

#include "core/Base/Geometry.h"

/// The rectangle with `n` more on each side.
inline CRect Inflated(const CRect& rc, int32_t n) {
    return {rc.left - n, rc.top - n, rc.right + n, rc.bottom + n};
}

/// The smallest rectangle that holds a rectangle and a position.
inline CRect WithPoint(const CRect& rc, CPoint pt) { return rc.Union({pt.x, pt.y, pt.x + 1, pt.y + 1}); }

/// The box around the corners of a rectangle, mapped by a function of positions; empty for an empty one.
template <class Map>
CRect MappedBox(const CRect& rc, Map fnMap) {
    if (rc.IsEmpty()) return {};
    CRect rcBox;
    for (const CPoint pt : {CPoint{rc.left, rc.top}, CPoint{rc.right, rc.top}, CPoint{rc.left, rc.bottom},
                            CPoint{rc.right, rc.bottom}})
        rcBox = WithPoint(rcBox, fnMap(pt));
    return rcBox;
}
