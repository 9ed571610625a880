#include "core/LayerBuffer/LayerChange.h"

namespace {

constexpr int32_t PATH_UNITS = 8; ///< to a pixel

void ShiftPlane(CRasterBuffer& from, CRasterBuffer& to, CPoint ptMove) {
    const CSize szBlock = to.GetBlockSize();
    const CRect rcBoth = from.GetRect().Intersect(to.GetRect());
    to.ForEachBlock([&](CPoint pt) {
        const CRect rcTo(pt, szBlock);
        if (ptMove == CPoint{} && rcTo.Intersect(rcBoth) == rcTo)
            return to.ShareBlock(pt, from.GetBlock(pt, false));
        const CRect rcFrom(pt - ptMove, szBlock);
        bool bAny = false;
        from.ForEachBlockIn(rcFrom, [&](CPoint ptFrom) { bAny = bAny || from.HasBlock(ptFrom); });
        if (!bAny) return;
        const auto spTile = from.ExtractBlock(rcFrom, false, nullptr);
        spTile->SetPosition(pt);
        spTile->ClearOutside(CRect(CPoint{} - pt, to.GetSize()));
        to.SetBlock(pt, spTile);
    });
}

// The mask's restriction: 255 where nothing is let through, no tile where everything is.
boost::shared_ptr<CAlphaBufferImpl<uint8_t>> Inverted(const CAlphaBufferImpl<uint8_t>& mask) {
    const auto spResult = boost::make_shared<CAlphaBufferImpl<uint8_t>>();
    spResult->Create(mask.GetSize(), mask.GetBlockSize());
    mask.ForEachBlock([&](CPoint pt) {
        const CAlphaBlock8* pTile = mask.FindBlock(pt);
        if (!pTile) return;
        const auto spTile = boost::static_pointer_cast<CAlphaBlock8>(pTile->Clone());
        for (size_t i = 0; i < spTile->GetPlaneBytes(); ++i) spTile->GetAlpha()[i] ^= 255;
        spResult->SetBlock(pt, spTile->IsAll(0) ? boost::shared_ptr<CAlphaBlock8>() : spTile);
    });
    return spResult;
}

} // namespace

TLayerChange ShiftChange(CPoint ptMove) {
    return {[ptMove](CRasterBuffer& from, CRasterBuffer& to) { ShiftPlane(from, to, ptMove); },
            [ptMove](CPoint pt) {
                return pt + CPoint{ptMove.x * PATH_UNITS, ptMove.y * PATH_UNITS};
            }};
}

boost::shared_ptr<CAlphaBufferImpl<uint8_t>> ChangeMask(const CAlphaBufferImpl<uint8_t>& mask, CSize sz,
                                                        const TLayerChange& change) {
    // A missing tile is 0 for every plane function, so what is changed is what the mask keeps back.
    CAlphaBufferImpl<uint8_t> changed;
    changed.Create(sz, mask.GetBlockSize());
    change.fnPlane(*Inverted(mask), changed);
    return Inverted(changed);
}
