// The screen copy: a 32-bit bitmap that a canvas window paints from, in the window systems' native format.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <utility>
#include <vector>

/// 4 bytes a pixel in the order B, G, R, 255; rows from the top without padding.
class CGDIBuffer : boost::noncopyable {
public:
    static constexpr int PIXEL_BYTES = 4;

    /// A black bitmap. Raises internal_error when the size is not positive.
    explicit CGDIBuffer(CSize sz);
    virtual ~CGDIBuffer() = default;

    CSize GetSize() const { return m_size; }
    /// Bytes from one row to the next.
    int GetStride() const { return m_size.cx * PIXEL_BYTES; }
    /// Address of a pixel's blue byte; unchecked.
    uint8_t* GetPixelPtr(CPoint pt) { return const_cast<uint8_t*>(std::as_const(*this).GetPixelPtr(pt)); }
    const uint8_t* GetPixelPtr(CPoint pt) const {
        return m_vPixels.data() +
               (static_cast<size_t>(pt.y) * static_cast<size_t>(m_size.cx) + static_cast<size_t>(pt.x)) *
                   PIXEL_BYTES;
    }
    /// Moves the whole picture; uncovered pixels keep their old content.
    void Scroll(CPoint ptMove);
    /// Copies the pixels of `rc`, clipped, from a bitmap of the same size.
    void CopyFrom(const CGDIBuffer& src, const CRect& rc);
    /// Fills the part of `rc` that lies inside with one colour (grey in B, G and R).
    void FillGrey(const CRect& rc, uint8_t uGrey);

private:
    std::vector<uint8_t> m_vPixels;
    CSize m_size;
};
