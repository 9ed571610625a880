#include "core/GDIBuffer/GDIBuffer.h"

#include "core/Base/Failure.h"

#include <algorithm>
#include <array>
#include <cstring>

CGDIBuffer::CGDIBuffer(CSize sz) : m_size(sz) {
    if (sz.cx <= 0 || sz.cy <= 0) throw internal_error(L"CGDIBuffer: the size is not positive.");
    m_vPixels.resize(static_cast<size_t>(GetStride()) * static_cast<size_t>(sz.cy));
    FillGrey(CRect({0, 0}, sz), 0);
}

void CGDIBuffer::Scroll(CPoint ptMove) {
    const CRect rcTo = CRect({0, 0}, m_size).Intersect(CRect(ptMove, m_size));
    if (rcTo.IsEmpty()) return;
    for (int32_t n = 0; n < rcTo.Height(); ++n) {
        // Rows that move down are copied from the bottom, so that none is overwritten before it has moved.
        const int32_t y = ptMove.y > 0 ? rcTo.bottom - 1 - n : rcTo.top + n;
        std::memmove(GetPixelPtr({rcTo.left, y}), GetPixelPtr(CPoint{rcTo.left, y} - ptMove),
                     static_cast<size_t>(rcTo.Width()) * PIXEL_BYTES);
    }
}

void CGDIBuffer::CopyFrom(const CGDIBuffer& src, const CRect& rc) {
    const CRect rcIn = rc.Intersect(CRect({0, 0}, m_size));
    if (rcIn.IsEmpty()) return;
    for (int32_t y = rcIn.top; y < rcIn.bottom; ++y)
        std::memcpy(GetPixelPtr({rcIn.left, y}), src.GetPixelPtr({rcIn.left, y}),
                    static_cast<size_t>(rcIn.Width()) * PIXEL_BYTES);
}

void CGDIBuffer::FillGrey(const CRect& rc, uint8_t uGrey) {
    const CRect rcIn = rc.Intersect(CRect({0, 0}, m_size));
    if (rcIn.IsEmpty()) return;
    const std::array<uint8_t, PIXEL_BYTES> aPixel{uGrey, uGrey, uGrey, 255};
    for (int32_t y = rcIn.top; y < rcIn.bottom; ++y)
        for (int32_t x = rcIn.left; x < rcIn.right; ++x)
            std::copy_n(aPixel.data(), PIXEL_BYTES, GetPixelPtr({x, y}));
}
