// One flag a block: whether what is derived from the block is stale.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/noncopyable.hpp>

#include <algorithm>
#include <cstdint>
#include <memory>

/// `m_size.cx * m_size.cy` flags row by row, all 0 at the start. The data is open to the block loops, which
/// OR matrices into each other byte by byte.
class CBoolMatrix : boost::noncopyable {
public:
    explicit CBoolMatrix(CSize sz)
        : m_pData(new uint8_t[static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy)]()),
          m_nCount(static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy)), m_size(sz) {}

    CSize GetSize() const { return m_size; }
    /// The flag of a block by column and row; unchecked.
    uint8_t& At(int32_t x, int32_t y) { return m_pData[Index(x, y)]; }
    uint8_t At(int32_t x, int32_t y) const { return m_pData[Index(x, y)]; }
    void Fill(bool b) { std::fill_n(m_pData.get(), m_nCount, b ? 1 : 0); }
    /// Sets every flag that `mat`, of the same size, has set.
    void Or(const CBoolMatrix& mat) {
        for (size_t i = 0; i < m_nCount; ++i) m_pData[i] |= mat.m_pData[i];
    }

    std::unique_ptr<uint8_t[]> m_pData;
    size_t m_nCount;

private:
    size_t Index(int32_t x, int32_t y) const {
        return static_cast<size_t>(y) * static_cast<size_t>(m_size.cx) + static_cast<size_t>(x);
    }

    CSize m_size;
};
