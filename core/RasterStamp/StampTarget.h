// Where stamps land: a coverage plane, tile by tile.
#pragma once

#include "core/RasterBuffer/AlphaBuffer.h"

#include <vector>

/// The coverage plane of a stroke.
using CStrokePlane = CAlphaBufferImpl<uint16_t>;

/// Knows the tiles that it has found or made, so that a stamp costs no look-up in the plane. A tile that
/// another plane shares is replaced by its clone before it is written.
class CStampTarget {
public:
    explicit CStampTarget(CStrokePlane& plane);

    /// Accumulates a stamp (stored as StampShape.h says) of half side `uHalfSize` around plane pixel `pt`
    /// with an opacity. What lies outside the plane is cut off; tiles are made where the stamp's square
    /// reaches, and their dirty flags are set, also those of a tile that begins right beyond its left or top
    /// edge.
    void Draw(const uint16_t* pStamp, uint32_t uHalfSize, CPoint pt, uint8_t byAlpha);
    /// To be called when another plane has come to share this one's tiles.
    void ForgetTiles();
    CStrokePlane& GetPlane() { return m_plane; }

private:
    uint16_t* TileAt(int32_t nColumn, int32_t nRow);
    void DrawOnTile(const uint16_t* pStamp, int32_t nSide, CPoint ptTile, const CRect& rcDraw, CPoint ptFirst,
                    uint8_t byAlpha);

    CStrokePlane& m_plane;
    CSize m_szBlock;
    CSize m_szBlocks;
    std::vector<uint16_t*> m_vTiles; ///< null where not looked up yet
};
