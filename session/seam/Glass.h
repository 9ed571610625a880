// The pixels of a window without a display.
#pragma once

#include "core/Platform/Window.h"

#include <vector>

class IImageCodecs;

/// Rows of pixels as IPaintTarget takes them, without padding; black where nothing was painted.
class CGlass : public IPaintTarget {
public:
    /// Clears to black; a negative side counts as 0.
    void Resize(CSize sz);
    void Blit(const uint8_t* pPixels, int nStride, CSize szBitmap, const CRect& rc) override;
    /// Paints the part `rc` of the pixels onto another target.
    void CopyTo(IPaintTarget& target, const CRect& rc) const;
    CSize GetSize() const { return m_size; }
    /// The bytes of a pixel inside the glass.
    const uint8_t* GetPixel(CPoint pt) const;
    /// Writes the pixels as an opaque picture in the format of the path's extension. False when that fails.
    bool Save(const std::wstring& strPath, IImageCodecs& codecs) const;

private:
    std::vector<uint8_t> m_vPixels;
    CSize m_size;
};
