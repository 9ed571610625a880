// Closed Bezier outlines as 8-bit coverage: the one road from paths to pixels.
//
// A pixel has 16 by 16 cells; a cell is set where the outline winds around its centre a number of times that
// is not 0. Centres on a line belong to its right and lower side, so outlines that share an edge neither
// leave cells out between them nor share any. A pixel's coverage is the number of its set cells, up to 255,
// softened by a filter that weighs the pixel 8 and its four neighbours 1 each, of 12, rounded. Beyond the
// left and right side of the plane neighbours count 0; above its top and below its bottom, as the pixel
// itself. Several outlines filled together are one shape: a cell is set where any of them sets it, so that
// they leave no seams. The plane takes the maximum of what it holds and the coverage.
//
// No mask is made. The outline becomes lines (FlattenOutline.h), these become chains that run down or up
// (MonotoneChains.h), whose crossings with the rows of cells are counted in a row of pixels at once
// (CellCounter.h); what lies between edges is filled. Four such rows are softened at once, again only around
// edges; where these lie apart, as they do in most rows, they alone are looked at. All is exact: the lines
// of an outline decide every cell, and any part of a plane comes out as it does in the fill of the whole.
//
// Outlines may lie anywhere in 32 bits; what lies beyond the pixels asked for costs a few comparisons a
// segment. Planes are up to 65,536 pixels wide and high.
#pragma once

#include "core/PathFill/CellCounter.h"
#include "core/RasterBuffer/AlphaBuffer.h"
#include "core/RasterKernel/SoftenKernel.h"

#include <array>
#include <span>
#include <vector>

/// A coverage plane on the canvas: its top left pixel there, and its size before rounding up to whole tiles
/// of DEFAULT_BLOCKSIZE.
struct TFillPlane {
    CPoint ptOrigin;
    CSize szPlane;
};

/// Fills outlines; keeps its memory for reuse, so keep one object for many fills. Not thread-safe.
///
/// `points` are 3n + 1 points in PolyBezier order, eighths of a canvas pixel, the last equal to the first;
/// other lists raise an invalid_argument violation before anything is written. Fewer than 4 fill nothing.
class CPathFill : boost::noncopyable {
public:
    using TOutline = std::span<const CPoint>;

    /// Raises `tile`, which has any size and its own position in the plane, to the outline's coverage
    /// there. Areas outside the outline cost nothing.
    void FillTile(TOutline points, const TFillPlane& plane, CAlphaBlock8& tile) {
        FillTile({&points, 1}, plane, tile);
    }
    /// The same for several outlines filled as one shape.
    void FillTile(std::span<const TOutline> outlines, const TFillPlane& plane, CAlphaBlock8& tile);
    /// Raises a whole plane whose top left pixel is `ptOrigin` on the canvas. Creates the tiles that the
    /// outline can reach, and clones shared ones.
    void FillPlane(TOutline points, CPoint ptOrigin, CAlphaBufferImpl<uint8_t>& plane);

private:
    static constexpr int32_t ROWS = 4; ///< rows of pixels softened together

    // Target pixels, in tiles of one size; several tiles are whole runs wide and a multiple of ROWS high.
    struct TTarget {
        CRect rc; ///< in the plane
        CSize szTile;
        int32_t nColumns;
        std::vector<uint8_t*> vTiles; ///< row by row
    };

    // Full rows of tiles, from tile nFirst to before nEnd.
    struct TFull {
        int32_t nFirst, nEnd;
        int32_t yTop, yEnd;
    };

    void Fill(std::span<const TOutline> outlines, CPoint ptOrigin, CSize szPlane);
    void FillBand(std::span<const TOutline> outlines, CPoint ptOrigin, CSize szPlane, int32_t yTop,
                  int32_t yEnd);
    void EnterTiles(int32_t y);
    void CountRow(int32_t y);
    void SoftenRows(int32_t y, int32_t nRows, const CRect& rcCount);
    CCountRow& RowAt(int32_t y) { return m_aRows[static_cast<size_t>(y) % m_aRows.size()]; }
    bool SoftenEdges(int32_t y, const CRect& rcCount);
    void SoftenEdge(const TFillEdge& edge, int32_t y);
    void FillRuns(int32_t y, int32_t nFirst, int32_t nEnd);
    void RaiseEven(int32_t y, int32_t x, int32_t xEnd, uint8_t uValue);
    void FillTiles(int32_t y, int32_t yEnd, int32_t nFirst, int32_t nEnd);
    void FlushTiles();

    TTarget m_target;
    uint8_t* const* m_pTiles = nullptr; ///< the row of tiles that is written
    int32_t m_yTiles = 0;               ///< its first row of pixels
    std::vector<uint8_t*> m_vRuns;      ///< its pixels there, by row and run
    TFull m_full{};
    CMonotoneChains m_chains;
    CCellCounter m_counter;
    std::vector<TFillEdge> m_vEdges;
    std::array<CCountRow, 8> m_aRows; ///< row y at y modulo 8
    const TSoftenKernels& m_kernels = SoftenKernels();
};
