// One flag a block: whether what is derived from the block is stale.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/noncopyable.hpp>

#include <algorithm>
#include <cstdint>
#include <vector>

/// Flags row by row, all 0 at the start. The matrix remembers which part of it was set since its flags were
/// last passed on, so that a gather which finds nothing new costs nothing. Flags are set by one thread at a
/// time; distinct ones may be cleared, read and set by SetAside by distinct threads.
class CBoolMatrix : boost::noncopyable {
public:
    explicit CBoolMatrix(CSize sz)
        : m_vFlags(static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy)), m_size(sz) {}

    CSize GetSize() const { return m_size; }
    size_t GetCount() const { return m_vFlags.size(); }
    /// The flag of a block by column and row; unchecked, as in Set, Add and Clear.
    uint8_t At(int32_t x, int32_t y) const { return m_vFlags[Index(x, y)]; }
    /// The flag of a block by index.
    uint8_t At(size_t i) const { return m_vFlags[i]; }
    /// Sets a flag, which is to be passed on also when it was set before.
    void Set(int32_t x, int32_t y) { Set(Index(x, y)); }
    void Set(size_t i) {
        m_vFlags[i] = 1;
        m_nFirst = std::min(m_nFirst, i);
        m_nEnd = std::max(m_nEnd, i + 1);
    }
    /// Sets a flag; one that was set before is not passed on again.
    void Add(int32_t x, int32_t y) {
        if (!At(x, y)) Set(x, y);
    }
    /// Sets a flag that is never to be passed on.
    void SetAside(int32_t x, int32_t y) { m_vFlags[Index(x, y)] = 1; }
    void Clear(int32_t x, int32_t y) { m_vFlags[Index(x, y)] = 0; }
    void Fill(bool b) {
        std::fill(m_vFlags.begin(), m_vFlags.end(), b ? 1 : 0);
        ForgetNew();
        if (b) RenewAll();
    }
    /// Adds every flag that `mat`, of the same size, has set.
    void Or(const CBoolMatrix& mat) {
        mat.ForEachSet(0, mat.GetCount(), [&](int32_t x, int32_t y) { Add(x, y); });
    }

    /// The index of the first flag that is set, GetCount() for none.
    size_t FindSet() const {
        return static_cast<size_t>(std::ranges::find(m_vFlags, uint8_t{1}) - m_vFlags.begin());
    }

    /// True when flags were set that have not been passed on.
    bool HasNew() const { return m_nFirst < m_nEnd; }
    /// Nothing is to be passed on.
    void ForgetNew() {
        m_nFirst = SIZE_MAX;
        m_nEnd = 0;
    }
    /// Every flag that is set is to be passed on once more.
    void RenewAll() {
        m_nFirst = 0;
        m_nEnd = GetCount();
    }
    /// Passes on: calls `fn(column, row)` for every flag that was set since the last time, and for some that
    /// were set before.
    template <class Function>
    void TakeNew(Function fn) {
        const size_t nFirst = m_nFirst;
        const size_t nEnd = m_nEnd;
        ForgetNew();
        ForEachSet(nFirst, nEnd, fn);
    }
    /// Passes on into a matrix of the same size.
    void PassTo(CBoolMatrix& mat) {
        TakeNew([&](int32_t x, int32_t y) { mat.Add(x, y); });
    }

private:
    size_t Index(int32_t x, int32_t y) const {
        return static_cast<size_t>(y) * static_cast<size_t>(m_size.cx) + static_cast<size_t>(x);
    }
    template <class Function>
    void ForEachSet(size_t nFirst, size_t nEnd, Function fn) const {
        const auto nColumns = static_cast<size_t>(m_size.cx);
        for (size_t i = nFirst; i < nEnd; ++i)
            if (m_vFlags[i]) fn(static_cast<int32_t>(i % nColumns), static_cast<int32_t>(i / nColumns));
    }

    std::vector<uint8_t> m_vFlags;
    size_t m_nFirst = SIZE_MAX; ///< from here to m_nEnd flags were set that were not passed on
    size_t m_nEnd = 0;
    CSize m_size;
};
