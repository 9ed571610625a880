#include "core/RasterBuffer/RasterBlockBuffer.h"

#include <algorithm>

void CRasterBlockBuffer::Allocate(CSize szBlock, CPoint ptPos, size_t nPlanes, size_t nSample) {
    constexpr size_t ALIGNMENT = 64;
    const size_t nPlane = static_cast<size_t>(szBlock.cx) * static_cast<size_t>(szBlock.cy);
    m_pAlloc.reset(new uint8_t[nPlane * nPlanes * nSample + ALIGNMENT]);
    const size_t nAddress = reinterpret_cast<uintptr_t>(m_pAlloc.get());
    m_pFirst = m_pAlloc.get() + ((nAddress + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT - nAddress);
    m_szBlock = szBlock;
    m_nSample = nSample;
    m_ptPos = ptPos;
}

CRect CRasterBlockBuffer::OverlapWith(const CRasterBlockBuffer& other, CPoint pt, CPoint& ptMove) const {
    ptMove = pt - m_ptPos;
    return {std::max(0, m_ptPos.x - pt.x), std::max(0, m_ptPos.y - pt.y),
            std::min(other.m_szBlock.cx, m_szBlock.cx + m_ptPos.x - pt.x),
            std::min(other.m_szBlock.cy, m_szBlock.cy + m_ptPos.y - pt.y)};
}
