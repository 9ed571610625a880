// Which of many things lie near a place: cells over a rectangle, each with the numbers of what touches it.
#pragma once

#include "core/PathFit/InkVector.h"

#include <algorithm>
#include <cstdint>
#include <vector>

/// An upright rectangle.
struct TInkBox {
    TInkVector low;
    TInkVector high;

    TInkBox Grown(double d) const { return {{low.x - d, low.y - d}, {high.x + d, high.y + d}}; }
    bool Has(TInkVector pt) const {
        return pt.x >= low.x && pt.x <= high.x && pt.y >= low.y && pt.y <= high.y;
    }
    bool Meets(const TInkBox& box) const {
        return box.high.x >= low.x && box.low.x <= high.x && box.high.y >= low.y && box.low.y <= high.y;
    }
    TInkBox Union(const TInkBox& box) const {
        return {{std::min(low.x, box.low.x), std::min(low.y, box.low.y)},
                {std::max(high.x, box.high.x), std::max(high.y, box.high.y)}};
    }
};

class CCellGrid {
public:
    /// Of boxes, by their numbers; cells are at least `dCell` wide.
    CCellGrid(const std::vector<TInkBox>& vBoxes, double dCell);

    /// Calls `visit` with the number of every box whose cells the box touches, some more than once, until it
    /// returns true. True when it did.
    template <class Visitor>
    bool Visit(const TInkBox& box, Visitor visit) const {
        const auto [x0, y0] = CellAt(box.low);
        const auto [x1, y1] = CellAt(box.high);
        for (size_t y = y0; y <= y1; ++y)
            for (size_t n = m_vStarts[y * m_nWidth + x0]; n < m_vStarts[y * m_nWidth + x1 + 1]; ++n)
                if (visit(m_vNumbers[n])) return true;
        return false;
    }

private:
    struct TCell {
        size_t x;
        size_t y;
    };
    TCell CellAt(TInkVector pt) const;

    TInkVector m_ptLow;
    double m_dCell;
    double m_dInverse = 1;
    size_t m_nWidth = 1;
    size_t m_nHeight = 1;
    std::vector<uint32_t> m_vStarts; ///< of each cell's numbers, row by row
    std::vector<uint32_t> m_vNumbers;
};

/// Calls `visit` with the number `n` and its neighbours below `nCount`, nearest first, until it returns true.
/// True when it did. What follows one another lies side by side, so this often saves a search.
template <class Visitor>
bool VisitAround(size_t n, size_t nCount, Visitor visit) {
    constexpr size_t NEIGHBOURS = 24;
    if (n < nCount && visit(n)) return true;
    for (size_t k = 1; k <= NEIGHBOURS; ++k) {
        if (n + k < nCount && visit(n + k)) return true;
        if (n >= k && n - k < nCount && visit(n - k)) return true;
    }
    return false;
}
