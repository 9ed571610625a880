// One running counter a block, by which every observer can tell on its own what changed since it last looked.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>
#include <vector>

class CBoolMatrix;

/// Counters row by row, all 0 at the start; none ever decreases. Observers keep value copies.
class UpdateCounterMatrix {
public:
    explicit UpdateCounterMatrix(CSize sz)
        : m_vCounters(static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy)), m_size(sz) {}

    CSize GetSize() const { return m_size; }
    /// The counter of a block by column and row; unchecked.
    uint64_t At(int32_t x, int32_t y) const { return m_vCounters[Index(x, y)]; }
    /// The sum of all counters: while it stays the same, none has moved.
    uint64_t GetChanges() const { return m_uChanges; }
    /// Takes what the matrix has to pass on and adds 1 to the counter of each such block. A matrix of another
    /// size is a defect.
    void Update(CBoolMatrix& mat);

private:
    size_t Index(int32_t x, int32_t y) const {
        return static_cast<size_t>(y) * static_cast<size_t>(m_size.cx) + static_cast<size_t>(x);
    }

    std::vector<uint64_t> m_vCounters;
    uint64_t m_uChanges = 0;
    CSize m_size;
};
