#include "core/GDIBuffer/GDIBuffer.h"

#include "core/Base/Failure.h"

#include <cstring>

CGDIBuffer::CGDIBuffer(CSize sz) : m_size(sz), m_nStride((sz.cx * 3 + 3) & ~3) {
    if (sz.cx <= 0 || sz.cy <= 0) throw internal_error(L"CGDIBuffer: the size is not positive.");
    m_vPixels.resize(static_cast<size_t>(m_nStride) * static_cast<size_t>(sz.cy));
}

void CGDIBuffer::Scroll(CPoint ptMove) {
    const CRect rcTo = CRect({0, 0}, m_size).Intersect(CRect(ptMove, m_size));
    if (rcTo.IsEmpty()) return;
    for (int32_t n = 0; n < rcTo.Height(); ++n) {
        // Rows that move down are taken from the bottom, so that none is overwritten before it has moved.
        const int32_t y = ptMove.y > 0 ? rcTo.bottom - 1 - n : rcTo.top + n;
        std::memmove(GetPixelPtr({rcTo.left, y}), GetPixelPtr(CPoint{rcTo.left, y} - ptMove),
                     static_cast<size_t>(rcTo.Width()) * 3);
    }
}

void CGDIBuffer::CopyFrom(const CGDIBuffer& src, const CRect& rc) {
    const CRect rcIn = rc.Intersect(CRect({0, 0}, m_size));
    if (rcIn.IsEmpty()) return;
    for (int32_t y = rcIn.top; y < rcIn.bottom; ++y)
        std::memcpy(GetPixelPtr({rcIn.left, y}), src.GetPixelPtr({rcIn.left, y}),
                    static_cast<size_t>(rcIn.Width()) * 3);
}

void CGDIBuffer::FillGrey(const CRect& rc, uint8_t uGrey) {
    const CRect rcIn = rc.Intersect(CRect({0, 0}, m_size));
    if (rcIn.IsEmpty()) return;
    for (int32_t y = rcIn.top; y < rcIn.bottom; ++y)
        std::memset(GetPixelPtr({rcIn.left, y}), uGrey, static_cast<size_t>(rcIn.Width()) * 3);
}
