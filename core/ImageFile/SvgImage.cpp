#include "core/ImageFile/SvgImage.h"

#include "core/RasterBuffer/PaintBounds.h"
#include "core/RasterBuffer/PlaneKind.h"

#include <algorithm>
#include <new>

namespace {

boost::shared_ptr<CRasterBuffer> PaintOwn(CLayerBuffer& layer, IProgress& progress) {
    const auto spPlane = CreatePlane(layer.GetCanvas()->IsColorPicture(), layer.GetSize(), DEFAULT_BLOCKSIZE);
    progress.Begin(L"レイヤーをまとめています", spPlane->GetBlockCount());
    spPlane->ForEachBlock([&](CPoint pt) {
        if (layer.PrepareOwn(pt)) layer.RenderOwn(*spPlane->GetBlock(pt, true));
        progress.Advance();
    });
    return spPlane;
}

boost::shared_ptr<CRasterBuffer> Crop(CRasterBuffer& plane, const CRect& rc) {
    const auto spCropped = plane.CreateSized(rc.Size(), plane.GetBlockSize());
    plane.ForEachBlockIn(rc, [&](CPoint pt) {
        if (const auto spTile = plane.GetBlock(pt, false)) spCropped->PasteBlock(*spTile, pt - rc.TopLeft());
    });
    return spCropped;
}

void TakePart(uint8_t* pBgra, ESvgPart part) {
    if (part == ESvgPart::Mask) std::fill_n(pBgra, 3, uint8_t{255});
    if (part == ESvgPart::Ground) pBgra[3] = 255;
}

bool TakePart(IBitmap& bitmap, CSize sz, ESvgPart part) {
    TLockedBits bits;
    if (!bitmap.LockBits(CRect({0, 0}, sz), ELockMode::Write, bits)) return false;
    for (int32_t y = 0; y < sz.cy; ++y) {
        uint8_t* pRow = bits.pData + static_cast<ptrdiff_t>(y) * bits.nStride;
        for (int32_t x = 0; x < sz.cx; ++x) TakePart(pRow + static_cast<ptrdiff_t>(x) * 4, part);
    }
    return bitmap.UnlockBits();
}

} // namespace

TSvgImage MakeSvgImage(CLayerBuffer& layer, ESvgPart part, IImageCodecs& codecs, IProgress& progress) {
    const auto spOwn = PaintOwn(layer, progress);
    const CRect rc = PaintBoundsOf(*spOwn);
    if (rc.IsEmpty()) return {};
    const CSize sz = rc.Size();
    if (std::max(sz.cx, sz.cy) > MAX_IMAGE_SIDE) return {rc, EFileFailure::PictureTooLarge};
    CBitmapSession session{codecs.CreateBitmap(sz)};
    if (!session.spBitmap) throw std::bad_alloc();
    const auto spCropped = Crop(*spOwn, rc);
    progress.Begin(L"画像にまとめています", spCropped->GetBlockCount());
    spCropped->WriteBitmap(session, progress);
    if (!session.bOk || !TakePart(*session.spBitmap, sz, part)) return {rc, EFileFailure::NoMemory};
    return {rc, codecs.EncodePng(*session.spBitmap, progress)};
}
