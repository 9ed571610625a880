#include "core/LayerBuffer/PathCoverage.h"

#include "core/Base/Parallel.h"

#include <algorithm>

namespace {

// Blocks are rasterized so many at once, across and down, so that a path is not taken up for each.
constexpr int32_t MAX_BLOCKS = 8;

/// From here on a second thread saves more time than its start takes.
constexpr int32_t PIXELS_FOR_THREADS = 24 * DEFAULT_BLOCKSIZE.cx * DEFAULT_BLOCKSIZE.cy;

// Path units to a pixel, as a power of two.
constexpr int PATH_UNIT_BITS = 3;

// More paths that come one after another are painted together with all others.
constexpr size_t MAX_ADDED = 64;

// The block of `pt` and more on its right and below it inside `rcLimit`, none of which is up to date, and all
// of which are flagged in `stale` or none.
CRect DirtyFrom(const CRasterBuffer& plane, const CBoolMatrix* pStale, CPoint pt, const CRect& rcLimit) {
    const CBoolMatrix& dirty = plane.GetDirty();
    const CSize sz = plane.GetBlockSize();
    const CPoint ptBlock{pt.x / sz.cx, pt.y / sz.cy};
    const CPoint ptLimit{
        std::min({dirty.GetSize().cx, ptBlock.x + MAX_BLOCKS, (rcLimit.right - 1) / sz.cx + 1}),
        std::min({dirty.GetSize().cy, ptBlock.y + MAX_BLOCKS, (rcLimit.bottom - 1) / sz.cy + 1})};
    const auto isAlike = [&](int32_t x, int32_t y) {
        return !pStale || pStale->At(x, y) == pStale->At(ptBlock.x, ptBlock.y);
    };
    const auto firstOther = [&](int32_t y, int32_t xEnd) {
        int32_t x = ptBlock.x;
        while (x < xEnd && dirty.At(x, y) && isAlike(x, y)) ++x;
        return x;
    };
    const int32_t xEnd = firstOther(ptBlock.y, ptLimit.x);
    int32_t yEnd = ptBlock.y + 1;
    while (yEnd < ptLimit.y && firstOther(yEnd, xEnd) == xEnd) ++yEnd;
    return {ptBlock.x * sz.cx, ptBlock.y * sz.cy, xEnd * sz.cx, yEnd * sz.cy};
}

// Rasterizes those blocks by `fnPaint` and clears their flags; returns their rectangle.
template <class Paint>
CRect UpdateBlocks(CAlphaBufferImpl<uint8_t>& plane, CBoolMatrix* pStale, CPoint pt, const CRect& rcLimit,
                   Paint fnPaint) {
    const CRect rc = DirtyFrom(plane, pStale, pt, rcLimit);
    // A tile of its own takes the paths, so that one that fails leaves the old coverage and the flags.
    CAlphaBlock8 all;
    all.Create(rc.Size(), rc.TopLeft());
    fnPaint(all, rc);
    plane.ForEachBlockIn(rc, [&](CPoint ptBlock) {
        auto spTile = boost::static_pointer_cast<CAlphaBlock8>(plane.CreateBlock(ptBlock));
        spTile->PasteFrom(all, all.GetPosition());
        if (spTile->IsAll(0)) spTile.reset();
        plane.SetBlock(ptBlock, spTile);
        plane.ClearDirty(ptBlock);
        if (pStale) pStale->Clear(ptBlock.x / DEFAULT_BLOCKSIZE.cx, ptBlock.y / DEFAULT_BLOCKSIZE.cy);
    });
    return rc;
}

boost::shared_ptr<CAlphaBufferImpl<uint8_t>> CreatePlane(CSize sz) {
    auto pPlane = boost::make_shared<CAlphaBufferImpl<uint8_t>>();
    pPlane->Create(sz, DEFAULT_BLOCKSIZE);
    return pPlane;
}

// Copies the tiles that the plane has inside a tile.
void PastePlane(CAlphaBufferImpl<uint8_t>& plane, CAlphaBlock8& tile) {
    plane.ForEachBlockIn(tile.GetRect(), [&](CPoint ptBlock) {
        if (const auto spTile = plane.GetBlock(ptBlock, false))
            tile.PasteFrom(static_cast<const CAlphaBlock8&>(*spTile), spTile->GetPosition());
    });
}

} // namespace

// The filter spreads coverage by one pixel.
CRect CoveredPixels(const CRect& rcPath) {
    if (rcPath.IsEmpty()) return {};
    return {(rcPath.left >> PATH_UNIT_BITS) - 1, (rcPath.top >> PATH_UNIT_BITS) - 1,
            ((rcPath.right - 1) >> PATH_UNIT_BITS) + 2, ((rcPath.bottom - 1) >> PATH_UNIT_BITS) + 2};
}

CPathCoverage::CPathCoverage(CSize sz, TColor color)
    : m_pPlane(CreatePlane(sz)), m_stale(m_pPlane->GetDirty().GetSize()) {
    m_pPlane->SetColor(color);
}

void CPathCoverage::Invalidate(const CRect& rcPath, const CPathObject* pPath) {
    m_pPlane->ForEachBlockIn(CoveredPixels(rcPath), [&](CPoint ptBlock) {
        m_pPlane->SetDirty(ptBlock);
        m_stale.Set(ptBlock.x / DEFAULT_BLOCKSIZE.cx, ptBlock.y / DEFAULT_BLOCKSIZE.cy);
    });
    if (m_pRest && !m_setLive.contains(pPath)) m_pRest->MarkDirty(CoveredPixels(rcPath));
}

void CPathCoverage::Add(const boost::shared_ptr<CPathObject>& spPath) {
    const CRect rc = CoveredPixels(spPath->RectIncludingPath());
    if (m_pRest) m_pRest->MarkDirty(rc);
    if (!m_pPlane->FindDirty()) m_vAdded.clear();
    if (m_vAdded.size() >= MAX_ADDED) {
        m_stale.Or(m_pPlane->GetDirty());
        m_vAdded.clear();
    }
    bool bMissing = false;
    m_pPlane->ForEachBlockIn(rc, [&](CPoint ptBlock) {
        m_pPlane->SetDirty(ptBlock);
        bMissing =
            bMissing || !m_stale.At(ptBlock.x / DEFAULT_BLOCKSIZE.cx, ptBlock.y / DEFAULT_BLOCKSIZE.cy);
    });
    if (bMissing) m_vAdded.push_back(spPath);
}

void CPathCoverage::SetLivePaths(std::vector<boost::shared_ptr<CPathObject>> vPaths) {
    if (m_vLive == vPaths) return;
    boost::shared_ptr<CAlphaBufferImpl<uint8_t>> pRest;
    std::unordered_set<const CPathObject*> setLive;
    if (!vPaths.empty()) {
        pRest = CreatePlane(m_pPlane->GetSize());
        pRest->GetDirty().Fill(true);
        for (const auto& spPath : vPaths) setLive.insert(spPath.get());
    }
    m_vLive = std::move(vPaths);
    m_setLive = std::move(setLive);
    m_pRest = pRest;
}

template <class TPaths>
void CPathCoverage::PaintRest(CAlphaBlock8& tile, const TPaths& paths) {
    PaintParts(tile, [&](CPathFill& fill, CAlphaBlock8& part) {
        const CRect rc = part.GetRect();
        for (const auto& spPath : paths)
            if (!IsLive(*spPath) && !CoveredPixels(spPath->RectIncludingPath()).Intersect(rc).IsEmpty())
                spPath->RasterizePath(fill, m_pPlane->GetSize(), part);
    });
}

void CPathCoverage::PaintLive(CAlphaBlock8& tile) {
    PaintParts(tile, [&](CPathFill& fill, CAlphaBlock8& part) {
        const CRect rc = part.GetRect();
        for (const auto& spPath : m_vLive)
            if (!CoveredPixels(spPath->RectIncludingPath(STATE_LIVE)).Intersect(rc).IsEmpty())
                spPath->RasterizePath(fill, m_pPlane->GetSize(), part, STATE_LIVE);
    });
}

// A large tile in two halves at once: a part is filled as it is in the whole.
template <class Paint>
void CPathCoverage::PaintParts(CAlphaBlock8& tile, Paint fnPaint) {
    const CRect rc = tile.GetRect();
    if (rc.Width() * rc.Height() < PIXELS_FOR_THREADS) return fnPaint(m_fill, tile);
    const int32_t yMiddle = rc.top + rc.Height() / 2;
    const std::array aHalves{CRect{rc.left, rc.top, rc.right, yMiddle},
                             CRect{rc.left, yMiddle, rc.right, rc.bottom}};
    std::array<CAlphaBlock8, aHalves.size()> aTiles;
    ForEachIndex(aTiles.size(), AvailableThreads(), [&](size_t n) {
        aTiles[n].Create(aHalves[n].Size(), aHalves[n].TopLeft());
        aTiles[n].PasteFrom(tile, tile.GetPosition());
        fnPaint(m_aHalfFills[n], aTiles[n]);
    });
    for (const CAlphaBlock8& half : aTiles) tile.PasteFrom(half, half.GetPosition());
}

CRect CPathCoverage::Update(CPoint pt, const TPathList& lstPaths) {
    const auto paintRest = [&](CAlphaBlock8& tile, const CRect&) { PaintRest(tile, lstPaths); };
    const bool bStale = m_stale.At(pt.x / DEFAULT_BLOCKSIZE.cx, pt.y / DEFAULT_BLOCKSIZE.cy) != 0;
    const auto paintAll = [&](CAlphaBlock8& tile, const CRect& rc) {
        if (m_pRest) {
            m_pRest->ForEachBlockIn(rc, [&](CPoint ptBlock) {
                if (m_pRest->DirtyAt(ptBlock)) UpdateBlocks(*m_pRest, nullptr, ptBlock, rc, paintRest);
            });
            PastePlane(*m_pRest, tile);
            PaintLive(tile);
        } else if (bStale) {
            PaintRest(tile, lstPaths);
        } else {
            PastePlane(*m_pPlane, tile);
            PaintRest(tile, m_vAdded);
        }
    };
    return UpdateBlocks(*m_pPlane, &m_stale, pt, m_pPlane->GetRect(), paintAll);
}

void CPathCoverage::Clear() {
    SetLivePaths({});
    m_pPlane->Clear();
    m_vAdded.clear();
    m_stale.Or(m_pPlane->GetDirty());
}
