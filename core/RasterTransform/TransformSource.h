// The pixels that are transformed.
#pragma once

#include "core/RasterBuffer/AlphaBuffer.h"

#include <cstdint>
#include <vector>

/// A rectangle of a plane (colour, grey or 8-bit coverage) that nobody writes meanwhile, limited by a mask.
/// Positions are the plane's.
struct TTransformSource {
    using TMask = CAlphaBufferImpl<uint8_t>;

    boost::shared_ptr<CRasterBuffer> spPlane;
    boost::shared_ptr<const TMask> spMask; ///< of the plane's geometry; null for none
    CRect rc;                              ///< inside the plane
    CPoint ptOffset;                       ///< canvas position of the plane's corner

    /// Its rectangle on the canvas.
    CRect GetHome() const { return CRect(rc.TopLeft() + ptOffset, rc.Size()); }

    /// True when a rectangle has a tile, of the mask too.
    bool HasTiles(const CRect& rcWanted) const;
};

/// Pixels of a source in one piece.
class CSourceWindow {
public:
    /// Reads a rectangle that lies inside the source's. The alpha is min(alpha, mask).
    void Read(const TTransformSource& source, const CRect& rc, size_t nChannels);
    /// Reads any rectangle, prepared for sampling. Beyond the source's edges its outermost pixels are
    /// repeated, so that an edge gets its softness from the part of the pixel that is covered alone.
    void Prepare(const TTransformSource& source, const CRect& rc, size_t nChannels);

    /// The pixels of the last Read: a channel's byte plane, row by row.
    const uint8_t* GetPlane(size_t nChannel) const { return m_vBytes.data() + nChannel * m_nPlane; }
    /// The pixels of the last Prepare; 8 values beyond may be read.
    const int16_t* GetPrepared() const { return m_vPrepared.data(); }

private:
    size_t m_nPlane = 0;
    std::vector<uint8_t> m_vBytes;
    std::vector<int16_t> m_vPrepared;
};

/// The byte planes of a tile.
inline size_t CountPlanes(const CRasterBlockBuffer& tile) { return tile.GetBytes() / tile.GetPlaneBytes(); }
