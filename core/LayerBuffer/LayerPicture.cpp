#include "core/LayerBuffer/LayerPicture.h"

#include "core/Base/Failure.h"
#include "core/GDIBuffer/GDIBuffer.h"
#include "core/GDIBuffer/RowPicture.h"
#include "core/GDIBuffer/ScreenMap.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/PlaneKind.h"

#include <algorithm>

namespace {

constexpr int THUMBNAIL_MINSIDE = 34; ///< thumbnails keep more than this on each side where they can

CSize DividedUp(CSize sz, int n) { return {(sz.cx + n - 1) / n, (sz.cy + n - 1) / n}; }

} // namespace

int ThumbnailScale(CSize szCanvas) {
    for (int n = DEFAULT_BLOCKSIZE.cx; n > 1; --n) {
        if (DEFAULT_BLOCKSIZE.cx % n != 0) continue;
        if (szCanvas.cx / n > THUMBNAIL_MINSIDE && szCanvas.cy / n > THUMBNAIL_MINSIDE) return n;
    }
    return 1;
}

CLayerPicture& CLayerPicture::PictureOf(const TLayerPtr& spLayer) { return spLayer->GetPicture(); }

void CLayerPicture::Create() {
    const CSize sz = m_layer.GetSize();
    const bool bColor = m_layer.GetCanvas()->IsColor();
    const int thumbScale = ThumbnailScale(sz);
    SELF_CHECK(illegal_data, DEFAULT_BLOCKSIZE.cx % thumbScale == 0);
    const auto pDrawBuffer = CreatePlane(bColor, sz, DEFAULT_BLOCKSIZE);
    if (m_pDrawBuffer) pDrawBuffer->SetOpacity(m_pDrawBuffer->GetOpacity());
    m_pThumbnail = CreatePlane(bColor, DividedUp(sz, thumbScale), DividedUp(DEFAULT_BLOCKSIZE, thumbScale));
    m_pDrawBuffer = pDrawBuffer;
    m_nThumbScale = thumbScale;
    MarkAllDirty();
}

void CLayerPicture::Clear() {
    m_pDrawBuffer->Clear();
    m_pThumbnail->Clear();
    MarkAllDirty();
}

const boost::shared_ptr<CRasterBuffer>& CLayerPicture::GetThumbnail() {
    m_pThumbnail->ForEachBlock([&](CPoint pt) {
        if (!m_pThumbnail->DirtyAt(pt)) return;
        const CPoint ptPicture{pt.x * m_nThumbScale, pt.y * m_nThumbScale};
        const CSize szInside = CRect(ptPicture, DEFAULT_BLOCKSIZE).Intersect(m_pDrawBuffer->GetRect()).Size();
        const auto spTile = m_pDrawBuffer->GetBlock(ptPicture, false);
        m_pThumbnail->SetBlock(
            pt, spTile ? spTile->CreateReduced(m_pThumbnail->GetBlockSize(), m_nThumbScale, szInside)
                       : boost::shared_ptr<CRasterBlockBuffer>());
        m_pThumbnail->ClearDirty(pt);
    });
    return m_pThumbnail;
}

boost::shared_ptr<const TPicture> CLayerPicture::CopyThumbnail() {
    const auto& spPlane = GetThumbnail();
    CGDIBuffer buffer(spPlane->GetSize());
    spPlane->DrawToScreen(buffer, {0, 0}, {});
    return MakePicture(buffer);
}

void CLayerPicture::UpdateBlock(CPoint pt) {
    if (!m_pDrawBuffer->DirtyAt(pt)) return;
    const TLayerList& lstChildren = m_layer.GetChildren();
    bool bPaints = m_layer.PaintsOwn() && m_layer.PrepareOwn(pt);
    for (const TLayerPtr& spChild : lstChildren) {
        PictureOf(spChild).RefreshBlock(pt);
        bPaints = bPaints || (!m_layer.IsClipping() && PictureOf(spChild).ShowsAt(pt));
    }
    // A layer's own tile serves as its picture when nothing comes to it: most tiles exist once.
    const auto spOwn = lstChildren.empty() ? m_layer.GetOwnTile(pt) : boost::shared_ptr<CRasterBlockBuffer>();
    if (!bPaints || spOwn) {
        m_pDrawBuffer->ShareBlock(pt, spOwn);
    } else {
        const auto spTile = m_pDrawBuffer->RenewBlock(pt);
        m_layer.RenderOwn(*spTile);
        PaintChildren(*spTile, [&](CLayerPicture& child) { child.DrawBlock(*spTile); });
    }
    m_pThumbnail->GetDirty().SetAside(pt.x / DEFAULT_BLOCKSIZE.cx, pt.y / DEFAULT_BLOCKSIZE.cy);
    m_pDrawBuffer->ClearDirty(pt);
}

void CLayerPicture::PrepareBlocks(std::span<const CPoint> blocks) {
    if (m_layer.IsPassThrough() && !m_layer.IsVisible()) return;
    if (m_layer.PreparesTogether() && m_layer.PaintsOwn())
        for (const CPoint pt : blocks)
            if (m_pDrawBuffer->DirtyAt(pt)) m_layer.PrepareOwn(pt);
    for (const TLayerPtr& spChild : m_layer.GetChildren()) PictureOf(spChild).PrepareBlocks(blocks);
}

void CLayerPicture::RefreshBlock(CPoint pt) {
    if (!m_layer.IsPassThrough()) return UpdateBlock(pt);
    if (!m_layer.IsVisible()) return;
    for (const TLayerPtr& spChild : m_layer.GetChildren()) PictureOf(spChild).RefreshBlock(pt);
    m_pDrawBuffer->ClearDirty(pt);
}

bool CLayerPicture::ShowsAt(CPoint pt) const {
    if (!m_layer.IsVisible()) return false;
    const TLayerList& lst = m_layer.GetChildren();
    return m_layer.IsPassThrough() ? std::any_of(lst.begin(), lst.end(),
                                                 [&](const auto& sp) { return PictureOf(sp).ShowsAt(pt); })
                                   : m_pDrawBuffer->HasBlock(pt);
}

template <class Paint>
void CLayerPicture::PaintChildren(CRasterBlockBuffer& dest, Paint paint) const {
    if (m_layer.GetChildren().empty()) return;
    // A clipped child adds colour but no coverage: the layer's own alpha is put back afterwards.
    const std::vector<uint8_t> vAlpha = m_layer.IsClipping() ? dest.CopyAlpha() : std::vector<uint8_t>();
    for (const TLayerPtr& spChild : m_layer.GetChildren()) paint(PictureOf(spChild));
    if (m_layer.IsClipping()) dest.RestoreAlpha(vAlpha);
}

void CLayerPicture::DrawBlock(CRasterBlockBuffer& dest) {
    if (m_layer.IsPassThrough()) {
        if (!m_layer.IsVisible()) return;
        PaintChildren(dest, [&](CLayerPicture& child) { child.DrawBlock(dest); });
        m_pDrawBuffer->ClearDirty(dest.GetPosition());
        return;
    }
    UpdateBlock(dest.GetPosition());
    if (m_layer.IsVisible()) m_pDrawBuffer->BlendBlockInto(dest, nullptr);
}

bool CLayerPicture::IsCachedFor(const CRasterBlockBuffer& dest) const {
    const bool bColor = dynamic_cast<const CColorRasterBlockBuffer*>(&dest) != nullptr;
    return !m_layer.IsPassThrough() && m_layer.PaintsOwn() && m_layer.GetCanvas()->IsColor() == bColor;
}

void CLayerPicture::PaintPicture(CRasterBlockBuffer& dest) {
    const CPoint pt = dest.GetPosition();
    if (IsCachedFor(dest)) {
        UpdateBlock(pt);
        if (const auto spTile = m_pDrawBuffer->GetBlock(pt, false)) spTile->BlendWith(dest, 255, nullptr);
        return;
    }
    if (m_layer.PrepareOwn(pt)) m_layer.RenderOwn(dest);
    PaintChildren(dest, [&](CLayerPicture& child) { child.PaintOnto(dest); });
}

void CLayerPicture::PaintOnto(CRasterBlockBuffer& dest) {
    if (!m_layer.IsVisible()) return;
    if (m_layer.IsPassThrough())
        PaintChildren(dest, [&](CLayerPicture& child) { child.PaintOnto(dest); });
    else if (HasPicture(dest.GetPosition()))
        PaintWithOpacity(dest);
}

void CLayerPicture::PaintWithOpacity(CRasterBlockBuffer& dest) {
    const auto spTile = dest.CreateBlank(dest.GetSize());
    PaintPicture(*spTile);
    spTile->BlendWith(dest, m_layer.GetOpacity(), nullptr);
}

bool CLayerPicture::HasPicture(CPoint pt) {
    if (m_layer.PrepareOwn(pt)) return true;
    const TLayerList& lst = m_layer.GetChildren();
    return !m_layer.IsClipping() && std::any_of(lst.begin(), lst.end(), [&](const TLayerPtr& spChild) {
        return spChild->IsVisible() && PictureOf(spChild).HasPicture(pt);
    });
}

void CLayerPicture::UpdateFlags() {
    CBoolMatrix& dirty = m_pDrawBuffer->GetDirty();
    for (const TLayerPtr& spChild : m_layer.GetChildren()) {
        CLayerPicture& child = PictureOf(spChild);
        child.UpdateFlags();
        // Nothing of a hidden set can show: its flags stay with it.
        if (spChild->IsVisible() || !spChild->IsPassThrough() || child.m_bJustHidden)
            child.m_pDrawBuffer->GetDirty().PassTo(dirty);
        child.m_bJustHidden = false;
    }
    m_layer.GetChangeMatrix(dirty);
}

void CLayerPicture::AddPictureTo(CBoolMatrix& matrix) const {
    if (m_layer.IsPassThrough())
        for (const TLayerPtr& spChild : m_layer.GetChildren()) PictureOf(spChild).AddPictureTo(matrix);
    m_pDrawBuffer->AddTilesTo(matrix);
    m_layer.AddHiddenTo(matrix);
}

void CLayerPicture::FlagVisibility() {
    m_bJustHidden = !m_layer.IsVisible();
    MarkPicture();
    m_pDrawBuffer->GetDirty().RenewAll();
}

void CLayerPicture::FlagComing(CLayerPicture& child) {
    child.UpdateFlags();
    child.DropNeedlessFlags();
    child.AddPictureTo(m_pDrawBuffer->GetDirty());
}

void CLayerPicture::DropNeedlessFlags() {
    for (const TLayerPtr& spChild : m_layer.GetChildren()) PictureOf(spChild).DropNeedlessFlags();
    m_pDrawBuffer->ForEachBlock([&](CPoint pt) {
        if (m_pDrawBuffer->DirtyAt(pt) && !m_pDrawBuffer->HasBlock(pt) && !m_layer.MayPaintAt(pt))
            m_pDrawBuffer->ClearDirty(pt);
    });
    m_pDrawBuffer->GetDirty().RenewAll();
}
