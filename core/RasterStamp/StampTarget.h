// The coverage plane that stamps are accumulated in, tile by tile.
#pragma once

#include "core/RasterBuffer/AlphaBuffer.h"

#include <vector>

/// The coverage plane of a stroke.
using CStrokePlane = CAlphaBufferImpl<uint16_t>;

/// Caches the plane's tiles, so that a stamp needs no look-up. A tile shared with another plane is cloned
/// before it is written.
class CStampTarget {
public:
    explicit CStampTarget(CStrokePlane& plane);

    /// Accumulates a stamp (stored as in StampShape.h) of half side `uHalfSize` around plane pixel `pt`
    /// with an opacity. Clips to the plane, creates the tiles that the stamp's square overlaps and sets
    /// their dirty flags, also of a tile that begins right beyond the square's left or top edge.
    void Draw(const uint16_t* pStamp, uint32_t uHalfSize, CPoint pt, uint8_t byAlpha);
    /// Must be called after another plane begins to share this plane's tiles.
    void ForgetTiles();
    CStrokePlane& GetPlane() { return m_plane; }

private:
    uint16_t* TileAt(int32_t nColumn, int32_t nRow);
    void DrawOnTile(const uint16_t* pStamp, int32_t nSide, CPoint ptTile, const CRect& rcDraw, CPoint ptFirst,
                    uint8_t byAlpha);

    CStrokePlane& m_plane;
    CSize m_szBlock;
    CSize m_szBlocks;
    std::vector<uint16_t*> m_vTiles; ///< null until looked up
};
