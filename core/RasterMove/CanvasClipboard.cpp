#include "core/RasterMove/CanvasClipboard.h"

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/ImageFile/DibBlock.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/RasterBuffer/SelectBuffer.h"

namespace {

// The alpha is the smaller of pixel and mask. Only where both have tiles is anything painted.
TDibBytes MakeBlockOf(CRasterBuffer& plane, CRasterBuffer& mask, const CRect& rc) {
    const TDibBlock block = CreateDibBlock(rc.Size());
    CBitmapSession session{block.spPixels};
    plane.ForEachBlockIn(rc, [&](CPoint pt) {
        if (!plane.HasBlock(pt) || !mask.HasBlock(pt)) return;
        const CRect rcPart = CRect(pt, plane.GetBlockSize()).Intersect(rc);
        const auto spMask = mask.ExtractBlock(rcPart, false, nullptr);
        const auto spPart = plane.ExtractBlock(rcPart, false, spMask.get());
        spPart->SetPosition(rcPart.TopLeft() - rc.TopLeft());
        spPart->WriteBitmap(session);
    });
    return block.spBytes;
}

boost::shared_ptr<CRasterLayerBuffer> FindRasterLayer(const CCanvasBuffer& canvas) {
    return boost::dynamic_pointer_cast<CRasterLayerBuffer>(canvas.GetActiveLayer());
}

} // namespace

bool CCanvasClipboard::CanCopy(const CCanvasBuffer& canvas) const {
    return canvas.GetSelect() && FindRasterLayer(canvas);
}

bool CCanvasClipboard::Copy(CCanvasBuffer& canvas) {
    if (!CanCopy(canvas)) return false;
    CSelectBuffer& select = *canvas.GetSelect();
    if (select.GetBound().IsEmpty()) return false;
    m_clipboard.SetBlock(
        MakeBlockOf(*FindRasterLayer(canvas)->GetRaster(), select.GetMask(), select.GetBound()));
    return true;
}
