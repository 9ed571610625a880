#include "core/LayerBuffer/FloatingPixels.h"

#include "core/RasterBuffer/PaintBounds.h"

#include <boost/make_shared.hpp>

namespace {

// Adds the alpha of `src` to `dest`, a tile of the same kind and size, and takes its colour where there is
// any.
void AddBack(CRasterBlockBuffer& dest, const CRasterBlockBuffer& src) {
    const size_t nPlane = src.GetPlaneBytes();
    const size_t nColors = src.GetBytes() / nPlane - 1;
    const uint8_t* pFrom = src.GetPixelPtr({0, 0});
    uint8_t* pTo = dest.GetPixelPtr({0, 0});
    const size_t nAlpha = nColors * nPlane;
    for (size_t i = 0; i < nPlane; ++i) {
        if (!pFrom[nAlpha + i]) continue;
        for (size_t n = 0; n < nAlpha; n += nPlane) pTo[n + i] = pFrom[n + i];
        pTo[nAlpha + i] = static_cast<uint8_t>(pTo[nAlpha + i] + pFrom[nAlpha + i]);
    }
}

} // namespace

boost::shared_ptr<CFloatingPixels> CFloatingPixels::MoveTo(CPoint ptOffset) const {
    return boost::make_shared<CFloatingPixels>(m_spPlane, m_spMask, ptOffset, m_ptHome);
}

boost::shared_ptr<CFloatingPixels> CFloatingPixels::Copy() const {
    return boost::make_shared<CFloatingPixels>(m_spPlane, m_spMask, m_ptOffset, std::nullopt);
}

boost::shared_ptr<CSelectBuffer> CFloatingPixels::CreateSelect(CSize szCanvas) const {
    if (!m_spMask) return {};
    const auto spSelect = boost::make_shared<CSelectBuffer>(szCanvas, *m_spMask, m_ptOffset);
    spSelect->UpdateOutline();
    return spSelect->GetBound().Width() > 0 ? spSelect : boost::shared_ptr<CSelectBuffer>();
}

bool CFloatingPixels::CoversBlock(CPoint pt) const {
    bool bAny = false;
    m_spPlane->ForEachBlockIn(CRect(pt - m_ptOffset, DEFAULT_BLOCKSIZE),
                              [&](CPoint ptOwn) { bAny = bAny || m_spPlane->HasBlock(ptOwn); });
    return bAny;
}

void CFloatingPixels::PaintInto(CRasterBlockBuffer& tile) const {
    const CRect rc(tile.GetPosition() - m_ptOffset, DEFAULT_BLOCKSIZE);
    const bool bAligned =
        rc.left % rc.Width() == 0 && rc.top % rc.Height() == 0 && m_spPlane->HasBlock(rc.TopLeft());
    const auto spPixels =
        bAligned ? m_spPlane->GetBlock(rc.TopLeft(), false) : m_spPlane->ExtractBlock(rc, false, nullptr);
    if (IsHome())
        AddBack(tile, *spPixels);
    else
        spPixels->BlendWith(tile, 255, nullptr);
    const CPoint ptTile = tile.GetPosition();
    if (const CRasterBuffer* pPlane = tile.GetOwner())
        tile.ClearOutside(CRect({-ptTile.x, -ptTile.y}, pPlane->GetSize()));
}

void CFloatingPixels::MergeInto(CRasterBuffer& raster, CPoint pt) const {
    if (!CoversBlock(pt)) return;
    if (IsHome() && !raster.HasBlock(pt))
        raster.SetBlock(pt, m_spPlane->GetBlock(pt - m_ptOffset, false));
    else
        PaintInto(*raster.GetWritableBlock(pt));
}

size_t CFloatingPixels::GetBytes(const CFloatingPixels* pOther) const {
    size_t nBytes = pOther && pOther->m_spPlane == m_spPlane ? 0 : m_spPlane->GetBytes(nullptr);
    if (!m_spMask || (pOther && pOther->m_spMask == m_spMask)) return nBytes;
    m_spMask->ForEachBlock([&](CPoint pt) {
        const CAlphaBlock8* pTile = m_spMask->FindBlock(pt);
        if (pTile && pTile != FullSelectTile().get()) nBytes += pTile->GetBytes();
    });
    return nBytes;
}

bool CFloatingPixels::HoldsCutTile(CPoint pt, const CRasterBlockBuffer* pTile) const {
    const CPoint ptOwn = m_ptHome ? pt - *m_ptHome : CPoint{-1, -1};
    return m_spPlane->HasBlock(ptOwn) && m_spPlane->GetBlock(ptOwn, false).get() == pTile;
}

boost::shared_ptr<CFloatingPixels> TakePixels(CRasterBuffer& raster, const CSelectBuffer* pSelect,
                                              bool bCut) {
    // The new planes lie on the layer's grid, so that whole tiles change hands without a copy.
    CRect rc = raster.GetRect();
    if (pSelect) {
        const CSize szBlock = raster.GetBlockSize();
        const auto up = [](int32_t n, int32_t nBlock) { return (n + nBlock - 1) / nBlock * nBlock; };
        const CRect rcBound = pSelect->GetBound();
        rc = CRect(rcBound.left / szBlock.cx * szBlock.cx, rcBound.top / szBlock.cy * szBlock.cy,
                   up(rcBound.right, szBlock.cx), up(rcBound.bottom, szBlock.cy))
                 .Intersect(rc);
    }
    const auto spPlane = raster.CreateSized(rc.Size(), raster.GetBlockSize());
    boost::shared_ptr<CFloatingPixels::TMask> spMask;
    if (pSelect) {
        spMask = boost::make_shared<CFloatingPixels::TMask>();
        spMask->Create(rc.Size(), raster.GetBlockSize());
    }
    raster.ForEachBlockIn(rc, [&](CPoint pt) {
        const auto spSelected = pSelect ? pSelect->GetMask().FindShared(pt) : FullSelectTile();
        if (!spSelected) return;
        if (spMask) spMask->ShareBlockImpl(pt - rc.TopLeft(), spSelected);
        if (!raster.HasBlock(pt)) return;
        if (spSelected == FullSelectTile()) {
            spPlane->ShareBlock(pt - rc.TopLeft(), raster.GetBlock(pt, false));
            if (bCut) raster.SetBlock(pt, {});
            return;
        }
        const CRect rcTile(pt, raster.GetBlockSize());
        const auto spTaken = raster.ExtractBlock(rcTile, false, spSelected.get());
        if (!HasPaint(*spTaken)) return;
        spPlane->SetBlock(pt - rc.TopLeft(), spTaken);
        spTaken->SetPosition(pt - rc.TopLeft());
        if (bCut) raster.ExtractBlock(rcTile, true, spSelected.get());
    });
    return boost::make_shared<CFloatingPixels>(spPlane, spMask, rc.TopLeft(),
                                               bCut ? std::optional(rc.TopLeft()) : std::nullopt);
}
