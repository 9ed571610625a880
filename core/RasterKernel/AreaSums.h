// A picture on white paper in a smaller size, from its parts in any order.
#pragma once

#include "core/Base/Geometry.h"

#include <array>
#include <cstdint>
#include <vector>

/// Sums the ink of the pixels that each pixel of the smaller picture covers, weighted by the covered part.
/// Exact: the result does not depend on how the picture is cut. Parts that are not added stay white.
class CAreaSums {
public:
    /// All sides are positive, up to 32767; those of `szTo` are not larger.
    CAreaSums(CSize szFrom, CSize szTo);

    CSize GetSize() const { return {m_across.nTo, m_down.nTo}; }
    /// Adds the pixels of `rc`, each only once; those outside the picture do not count. The planes hold the
    /// rows of `rc` without padding: R, G, B, and straight alpha, resolved as `ResolveOnWhite` does.
    void Add(const CRect& rc, const std::array<const uint8_t*, 3>& apChannels, const uint8_t* pAlpha);
    /// The smaller picture: B, G, R, 255; means to the nearest.
    std::vector<uint8_t> GetPixels() const;

private:
    // A pixel covers at most two pixels of the smaller picture; weights are its parts of nTo.
    struct TPart {
        int32_t nFirst;
        uint32_t uFirst;
        uint32_t uNext;
    };
    struct TAxis {
        TAxis(int32_t nFrom, int32_t nTo);
        int32_t nFrom;
        int32_t nTo;
        std::vector<TPart> vParts; ///< of each pixel
    };

    void AddRow(const CRect& rcIn, int32_t y, size_t nChannel, const std::vector<uint32_t>& vInk);

    const TAxis m_across;
    const TAxis m_down;
    std::vector<uint64_t> m_vSums; ///< of R, G, B of each pixel
};
