#include "core/LayerBuffer/PathCoverage.h"

#include <algorithm>

namespace {

// Blocks are rasterized so many at once, across and down, so that a path is not taken up for each.
constexpr int32_t MAX_BLOCKS = 8;

// Path units to a pixel, as a power of two.
constexpr int PATH_UNIT_BITS = 3;

// The block of `pt` and more on its right and below it, none of which is up to date.
CRect DirtyFrom(const CRasterBuffer& coverage, CPoint pt) {
    const CBoolMatrix& dirty = coverage.GetDirty();
    const CSize sz = coverage.GetBlockSize();
    const CPoint ptBlock{pt.x / sz.cx, pt.y / sz.cy};
    const CPoint ptLimit{std::min(dirty.GetSize().cx, ptBlock.x + MAX_BLOCKS),
                         std::min(dirty.GetSize().cy, ptBlock.y + MAX_BLOCKS)};
    const auto firstClean = [&](int32_t y, int32_t xEnd) {
        int32_t x = ptBlock.x;
        while (x < xEnd && dirty.At(x, y)) ++x;
        return x;
    };
    const int32_t xEnd = firstClean(ptBlock.y, ptLimit.x);
    int32_t yEnd = ptBlock.y + 1;
    while (yEnd < ptLimit.y && firstClean(yEnd, xEnd) == xEnd) ++yEnd;
    return {ptBlock.x * sz.cx, ptBlock.y * sz.cy, xEnd * sz.cx, yEnd * sz.cy};
}

} // namespace

// The filter spreads coverage by one pixel.
CRect CoveredPixels(const CRect& rcPath) {
    if (rcPath.IsEmpty()) return {};
    return {(rcPath.left >> PATH_UNIT_BITS) - 1, (rcPath.top >> PATH_UNIT_BITS) - 1,
            ((rcPath.right - 1) >> PATH_UNIT_BITS) + 2, ((rcPath.bottom - 1) >> PATH_UNIT_BITS) + 2};
}

CRect UpdateCoverage(CAlphaBufferImpl<uint8_t>& coverage, CPoint pt, const TPathList& lstPaths,
                     CPathFill& fill) {
    const CRect rc = DirtyFrom(coverage, pt);
    // A tile of its own takes the paths, so that one that fails leaves the old coverage and the flags.
    CAlphaBlock8 all;
    all.Create(rc.Size(), rc.TopLeft());
    for (const auto& spPath : lstPaths)
        if (!CoveredPixels(spPath->RectIncludingPath()).Intersect(rc).IsEmpty())
            spPath->RasterizePath(fill, coverage.GetSize(), all);
    coverage.ForEachBlockIn(rc, [&](CPoint ptBlock) {
        auto spTile = boost::static_pointer_cast<CAlphaBlock8>(coverage.CreateBlock(ptBlock));
        spTile->PasteFrom(all, all.GetPosition());
        if (spTile->IsAll(0)) spTile.reset();
        coverage.SetBlock(ptBlock, spTile);
        coverage.ClearDirty(ptBlock);
    });
    return rc;
}
