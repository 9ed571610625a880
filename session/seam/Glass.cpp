#include "session/seam/Glass.h"

#include "core/GDIBuffer/GDIBuffer.h"
#include "core/Platform/Bitmap.h"

#include <algorithm>

namespace {

constexpr int PIXEL_BYTES = CGDIBuffer::PIXEL_BYTES;

} // namespace

void CGlass::Resize(CSize sz) {
    m_size = {std::max(sz.cx, 0), std::max(sz.cy, 0)};
    m_vPixels.assign(static_cast<size_t>(m_size.cx) * static_cast<size_t>(m_size.cy) * PIXEL_BYTES, 0);
}

const uint8_t* CGlass::GetPixel(CPoint pt) const {
    return m_vPixels.data() +
           (static_cast<size_t>(pt.y) * static_cast<size_t>(m_size.cx) + static_cast<size_t>(pt.x)) *
               PIXEL_BYTES;
}

void CGlass::Blit(const uint8_t* pPixels, int nStride, CSize szBitmap, const CRect& rc) {
    const CRect rcShown = rc.Intersect({{0, 0}, szBitmap}).Intersect({{0, 0}, m_size});
    if (rcShown.IsEmpty()) return;
    for (int32_t y = rcShown.top; y < rcShown.bottom; ++y) {
        const uint8_t* pRow = pPixels + static_cast<ptrdiff_t>(y) * nStride + rcShown.left * PIXEL_BYTES;
        std::copy_n(pRow, rcShown.Width() * PIXEL_BYTES,
                    m_vPixels.begin() + (GetPixel({rcShown.left, y}) - m_vPixels.data()));
    }
}

void CGlass::CopyTo(IPaintTarget& target, const CRect& rc) const {
    if (!m_vPixels.empty()) target.Blit(m_vPixels.data(), m_size.cx * PIXEL_BYTES, m_size, rc);
}

bool CGlass::Save(const std::wstring& strPath, IImageCodecs& codecs) const {
    const auto spBitmap = codecs.CreateBitmap(m_size);
    TLockedBits bits;
    if (!spBitmap || !spBitmap->LockBits({{0, 0}, m_size}, ELockMode::Write, bits)) return false;
    for (int32_t y = 0; y < m_size.cy; ++y) {
        uint8_t* pOut = bits.pData + static_cast<ptrdiff_t>(y) * bits.nStride;
        for (int32_t x = 0; x < m_size.cx; ++x, pOut += 4) {
            std::copy_n(GetPixel({x, y}), 3, pOut);
            pOut[3] = 255;
        }
    }
    return spBitmap->UnlockBits() && codecs.Save(strPath, *spBitmap);
}
