#include "core/RasterMove/CanvasClipboard.h"

#include "core/Base/Failure.h"
#include "core/CanvasBuffer/NewLayer.h"
#include "core/ImageFile/DibBlock.h"
#include "core/LayerBuffer/FloatHistory.h"
#include "core/LayerBuffer/LayerHistory.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/RasterBuffer/PaintBounds.h"
#include "core/RasterBuffer/PlaneKind.h"
#include "core/RasterMove/SelectionCommands.h"
#include "core/Tools/ActiveView.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

/// Pixels to be copied: a plane, null or the mask of the same size, and their place on the canvas.
struct TSource {
    CRasterBuffer& plane;
    CRasterBuffer* pMask;
    CPoint ptOffset;
};

// The alpha is the smaller of pixel and mask. Only where both have tiles is anything painted.
TDibBytes MakeBlockOf(const TSource& source, const CRect& rc) {
    const TDibBlock block = CreateDibBlock(rc.Size());
    CBitmapSession session{block.spPixels};
    source.plane.ForEachBlockIn(rc, [&](CPoint pt) {
        if (!source.plane.HasBlock(pt) || (source.pMask && !source.pMask->HasBlock(pt))) return;
        const CRect rcPart = CRect(pt, source.plane.GetBlockSize()).Intersect(rc);
        const auto spMask = source.pMask ? source.pMask->ExtractBlock(rcPart, false, nullptr) : nullptr;
        const auto spPart = source.plane.ExtractBlock(rcPart, false, spMask.get());
        spPart->SetPosition(rcPart.TopLeft() - rc.TopLeft());
        spPart->WriteBitmap(session);
    });
    return block.spBytes;
}

// Tiles without paint would only take memory.
boost::shared_ptr<CFloatingPixels> MakeFloat(const boost::shared_ptr<IBitmap>& spPicture, bool bColor,
                                             CSize sz, CPoint ptAt) {
    const auto spPlane = CreatePlane(bColor, sz, DEFAULT_BLOCKSIZE);
    const auto spMask = boost::make_shared<CFloatingPixels::TMask>();
    spMask->Create(sz, DEFAULT_BLOCKSIZE);
    CBitmapSession session{spPicture};
    spPlane->ForEachBlock([&](CPoint pt) {
        spMask->ShareBlockImpl(pt, FullSelectTile());
        const auto spTile = spPlane->CreateBlock(pt);
        spTile->ReadBitmap(session);
        if (HasPaint(*spTile)) spPlane->SetBlock(pt, spTile);
    });
    return boost::make_shared<CFloatingPixels>(spPlane, spMask, ptAt, std::nullopt);
}

// The middle of the view, moved into the canvas where the picture fits. All along one axis.
int32_t PlaceAlong(int32_t nShown, int32_t nShownSize, int32_t nPicture, int32_t nCanvas) {
    const int32_t n = nShown + (nShownSize - nPicture) / 2;
    return nPicture <= nCanvas ? std::clamp(n, 0, nCanvas - nPicture) : n;
}

} // namespace

bool CCanvasClipboard::Copy(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    if (!CanClear(*spCanvas)) return false;
    spCanvas->CompleteWork();
    const auto spLayer = ActiveRasterLayer(*spCanvas);
    const auto spFloat = spLayer->GetFloat();
    const TSource source = spFloat
                               ? TSource{spFloat->GetPlane(), spFloat->GetMask().get(), spFloat->GetOffset()}
                               : TSource{*spLayer->GetRaster(), &spCanvas->GetSelect()->GetMask(), {}};
    const CRect rc = spFloat ? PaintBoundsOf(source.pMask ? *source.pMask : source.plane)
                             : spCanvas->GetSelect()->GetBound();
    if (rc.IsEmpty()) return false;
    const TDibBytes spBlock = MakeBlockOf(source, rc);
    m_clipboard.SetBlock(spBlock);
    m_copied = {spBlock, source.ptOffset + rc.TopLeft(), spCanvas->GetSize(), m_clipboard.GetChangeCount()};
    return true;
}

TDibBytes CCanvasClipboard::FindOwn() const {
    return m_copied.uChange == m_clipboard.GetChangeCount() ? m_copied.wpBlock.lock() : TDibBytes();
}

// A picture of this application means its alpha, also where that is 0 everywhere.
TLoadedPicture CCanvasClipboard::TakePicture() const {
    const TDibBytes spOwn = FindOwn();
    return spOwn ? ReadDibBlock(spOwn, EZeroAlpha::Transparent) : m_clipboard.GetPicture();
}

CPoint CCanvasClipboard::FindPlace(const IActiveView& view, CSize szPicture) const {
    const CSize szCanvas = view.GetCanvas()->GetSize();
    const CRect rcShown = view.GetShownRect();
    const CRect rcOld(m_copied.ptAt, szPicture);
    if (FindOwn() && m_copied.szCanvas == szCanvas && rcOld.Intersect(rcShown) == rcOld) return m_copied.ptAt;
    return {PlaceAlong(rcShown.left, rcShown.Width(), szPicture.cx, szCanvas.cx),
            PlaceAlong(rcShown.top, rcShown.Height(), szPicture.cy, szCanvas.cy)};
}

bool CCanvasClipboard::Paste(const IActiveView& view) {
    const boost::shared_ptr<CCanvasBuffer>& spCanvas = view.GetCanvas();
    const TLoadedPicture picture = TakePicture();
    CSize sz;
    if (!picture || !picture->GetWidth(sz.cx) || !picture->GetHeight(sz.cy))
        throw refused_error(L"クリップボードの画像を貼り付けられませんでした。\n" +
                            std::wstring(AdviceFor(picture.failure)));
    spCanvas->CompleteWork();
    const auto floatRaster = MakeFloat(picture, spCanvas->IsColorRaster(), sz, FindPlace(view, sz));
    SELF_CHECK(illegal_data, floatRaster);
    const auto spSelect = floatRaster->CreateSelect(spCanvas->GetSize());
    const CFloatDrop drop(spCanvas);
    auto spLayer = ActiveRasterLayer(*spCanvas);
    boost::shared_ptr<CHistory> spHistory = boost::make_shared<CRasterMoveHistory>(
        L"貼り付け", spCanvas, spCanvas->GetFloatState(), nullptr, nullptr);
    if (!spLayer) {
        spLayer = CreateRasterLayer(spCanvas);
        const TNewPlace place = FindNewPlace(*spCanvas);
        spLayer->setName(UniqueLayerName(*place.spParent, NEW_RASTER_LAYER));
        spHistory = JoinHistories(
            boost::make_shared<CAddDelLayerHistory<true>>(place.spParent, place.idxLayer, spLayer),
            spHistory);
        place.spParent->AddLayer(spLayer, place.idxLayer, false);
        spCanvas->SelectLayer(spLayer);
    }
    spCanvas->SetFloatState({floatRaster, spLayer, spSelect});
    try {
        spCanvas->GetHistory().Register(spHistory);
    } catch (...) {
        spHistory->Undo();
        throw;
    }
    return true;
}
