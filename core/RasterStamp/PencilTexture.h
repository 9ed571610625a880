// The paper texture of a pencil.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/noncopyable.hpp>

#include <algorithm>
#include <cstdint>
#include <vector>

class IImageCodecs;

/// One of the three embedded papers, a byte a texel, eight texels to a canvas pixel. A lighter texel takes
/// less graphite. Repeats over the canvas.
class CPencilTexture : boost::noncopyable {
public:
    /// `nTexture` is 1 (fine) to 3. Raises constraint_violation_as<defect_logic> with "unknown texture" for
    /// another number, with "img" when its picture cannot be read.
    CPencilTexture(int nTexture, IImageCodecs* pCodecs);

    bool is(int nTexture) const { return m_nTexture == nTexture; }
    /// The texel at a canvas position in eighths of a pixel; positions left of or above the canvas are
    /// clamped.
    uint8_t At(int32_t x, int32_t y) const {
        return m_vTexels[static_cast<size_t>(std::max(y, 0) % m_sz.cy) * static_cast<size_t>(m_sz.cx) +
                         static_cast<size_t>(std::max(x, 0) % m_sz.cx)];
    }

private:
    int m_nTexture;
    CSize m_sz;
    std::vector<uint8_t> m_vTexels;
};
