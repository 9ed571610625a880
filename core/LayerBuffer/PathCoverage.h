// The coverage of a vector layer's paths, rasterized block by block.
#pragma once

#include "core/LayerBuffer/PathIndex.h"
#include "core/RasterBuffer/AlphaBuffer.h"

#include <unordered_set>
#include <vector>

/// The canvas pixels that coverage inside a box of path units reaches; empty for an empty box.
CRect CoveredPixels(const CRect& rcPath);

/// A plane of the canvas's size with the committed shapes of all paths. Some of them, the live paths, are
/// painted as their drag shows them: the coverage of the others is kept apart, so that only these are
/// rasterized again when they move.
class CPathCoverage : boost::noncopyable {
public:
    CPathCoverage(CSize sz, TColor color);

    /// The coverage; its ink is the layer's colour, its flags mark what is not up to date.
    CAlphaBufferImpl<uint8_t>& GetPlane() { return *m_pPlane; }
    const CAlphaBufferImpl<uint8_t>& GetPlane() const { return *m_pPlane; }
    /// Flags the blocks that `path`, or any path for null, covers inside a box of path units.
    void Invalidate(const CRect& rcPath, const CPathObject* pPath);
    /// A path has come to the layer: flags the blocks that it covers. Since paths never lower coverage, only
    /// this path is painted in those that are up to date. A later change of the path has to be told as for
    /// any other.
    void Add(const boost::shared_ptr<CPathObject>& spPath);
    /// Chooses the live paths, which must be the layer's.
    void SetLivePaths(std::vector<boost::shared_ptr<CPathObject>> vPaths);
    bool IsLive(const CPathObject& path) const { return m_setLive.contains(&path); }
    /// Rasterizes the block of `pt`, which is flagged, and flagged ones on its right and below it anew, and
    /// clears their flags. Returns the rectangle of these blocks. After a failure coverage and flags are as
    /// they were.
    CRect Update(CPoint pt, const TPathList& lstPaths);
    /// Releases the tiles; only the blocks that are flagged afterwards are rasterized again.
    void Clear();

private:
    template <class Paint>
    void PaintParts(CAlphaBlock8& tile, Paint fnPaint);
    template <class TPaths>
    void PaintRest(CAlphaBlock8& tile, const TPaths& paths);
    void PaintLive(CAlphaBlock8& tile);

    CPathFill m_fill;
    std::array<CPathFill, 2> m_aHalfFills; ///< of the halves of a large tile
    boost::shared_ptr<CAlphaBufferImpl<uint8_t>> m_pPlane;
    CBoolMatrix m_stale; ///< flagged blocks in which more is missing than the paths of m_vAdded
    std::vector<boost::shared_ptr<CPathObject>> m_vAdded;
    std::vector<boost::shared_ptr<CPathObject>> m_vLive;
    std::unordered_set<const CPathObject*> m_setLive;     ///< the same
    boost::shared_ptr<CAlphaBufferImpl<uint8_t>> m_pRest; ///< all paths but the live ones; null without any
};
