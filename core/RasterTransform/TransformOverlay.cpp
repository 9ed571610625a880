#include "core/RasterTransform/TransformOverlay.h"

#include "core/Base/Parallel.h"
#include "core/RasterBuffer/PaintBounds.h"

#include <algorithm>
#include <cstring>

namespace {

// Takes the source's pixels away from a copy of its block.
void TakeAway(const TTransformSource& source, CRasterBlockBuffer& work) {
    const CPoint ptBlock = work.GetPosition();
    const CRect rc = work.GetRect().Intersect(source.rc);
    const CAlphaBlock8* pMask = source.spMask ? source.spMask->FindBlock(ptBlock) : nullptr;
    if (rc.IsEmpty() || (source.spMask && !pMask)) return;
    const size_t nAlpha = work.GetBytes() - work.GetPlaneBytes();
    for (int32_t y = rc.top; y < rc.bottom; ++y) {
        const CPoint pt = CPoint{rc.left, y} - ptBlock;
        uint8_t* pAlpha = work.GetPixelPtr(pt) + nAlpha;
        const uint8_t* pTaken = pMask ? pMask->GetPixelPtr(pt) : pAlpha;
        for (int32_t x = 0; x < rc.Width(); ++x)
            pAlpha[x] = static_cast<uint8_t>(pAlpha[x] - std::min(pAlpha[x], pTaken[x]));
    }
}

// Composites a tile over another; pixels that were transparent take its bytes as they are.
void LayOver(const CRasterBlockBuffer& tile, CRasterBlockBuffer& work) {
    if (!HasPaint(work)) {
        std::memcpy(work.GetPixelPtr({0, 0}), tile.GetPixelPtr({0, 0}), work.GetBytes());
        return;
    }
    const std::vector<uint8_t> vAlpha = work.CopyAlpha();
    tile.BlendWith(work, 255, nullptr);
    const size_t nPlane = work.GetPlaneBytes();
    for (size_t nAt = 0; nAt < work.GetBytes(); nAt += nPlane) {
        const uint8_t* pFrom = tile.GetPixelPtr({0, 0}) + nAt;
        uint8_t* pTo = work.GetPixelPtr({0, 0}) + nAt;
        for (size_t i = 0; i < nPlane; ++i) pTo[i] = vAlpha[i] ? pTo[i] : pFrom[i];
    }
}

bool IsSame(const CRasterBlockBuffer& a, const CRasterBlockBuffer& b) {
    return std::memcmp(a.GetPixelPtr({0, 0}), b.GetPixelPtr({0, 0}), a.GetBytes()) == 0;
}

} // namespace

CTransformOverlay::CTransformOverlay(const TTransformSource& source,
                                     const boost::shared_ptr<CRasterBuffer>& spRaster,
                                     const boost::shared_ptr<CFloatingPixels>& spFloat)
    : m_source(source), m_spRaster(spRaster), m_spFloat(spFloat), m_map(source.rc, QuadOf(source.GetHome())),
      m_dirty(spRaster->GetBufferSize()) {}

template <class Function>
void CTransformOverlay::ForEachTouched(Function fn) const {
    const CRect rcTo = BoundsOf(m_map.GetQuad(), m_spRaster->GetRect());
    m_spRaster->ForEachBlockIn(m_source.GetHome().Union(rcTo), [&](CPoint pt) {
        if (CoversBlock(pt)) fn(pt);
    });
}

void CTransformOverlay::FlagTouched() {
    const CSize szBlock = m_spRaster->GetBlockSize();
    ForEachTouched([&](CPoint pt) { m_dirty.Set(pt.x / szBlock.cx, pt.y / szBlock.cy); });
}

void CTransformOverlay::SetQuad(const TQuad& quad) {
    FlagTouched();
    m_map = CTransformMap(m_source.rc, quad);
    FlagTouched();
}

bool CTransformOverlay::CoversBlock(CPoint pt) const {
    if (IsIdentity()) return m_spFloat && m_spFloat->CoversBlock(pt);
    const CRect rc(pt, m_spRaster->GetBlockSize());
    if (!m_spFloat && m_source.HasTiles(rc)) return true;
    return !BoundsOf(m_map.GetQuad(), rc).IsEmpty() && m_map.Holds(rc) != false;
}

void CTransformOverlay::PaintInto(CRasterBlockBuffer& work) const {
    if (IsIdentity()) {
        if (m_spFloat) m_spFloat->PaintInto(work);
        return;
    }
    if (!m_spFloat) TakeAway(m_source, work);
    const auto spTile = work.CreateBlank(work.GetSize());
    if (RenderTransform(m_source, m_map, m_spRaster->GetRect(), *spTile)) LayOver(*spTile, work);
}

void CTransformOverlay::ClearFlag(CPoint pt) {
    const CSize szBlock = m_spRaster->GetBlockSize();
    m_dirty.Clear(pt.x / szBlock.cx, pt.y / szBlock.cy);
}

TTransformTiles CTransformOverlay::MakeTiles(size_t nThreads) const {
    TTransformTiles vTiles;
    ForEachTouched([&](CPoint pt) { vTiles.emplace_back(pt, nullptr); });
    std::vector<uint8_t> vChanged(vTiles.size());
    ForEachIndex(vTiles.size(), nThreads, [&](size_t i) {
        auto& [pt, spTile] = vTiles[i];
        const auto spOld = m_spRaster->GetBlock(pt, false);
        const auto spNew = spOld ? spOld->Clone() : m_spRaster->CreateBlock(pt);
        PaintInto(*spNew);
        if (HasPaint(*spNew)) spTile = spNew;
        vChanged[i] = spOld ? !spTile || !IsSame(*spOld, *spNew) : spTile != nullptr;
    });
    size_t i = 0;
    std::erase_if(vTiles, [&](const auto&) { return !vChanged[i++]; });
    return vTiles;
}
