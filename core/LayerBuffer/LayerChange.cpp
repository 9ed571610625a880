#include "core/LayerBuffer/LayerChange.h"

#include "core/Base/Parallel.h"

#include <algorithm>

namespace {

constexpr int32_t PATH_UNITS = 8;      ///< to a pixel
constexpr size_t BLOCKS_OF_THREAD = 4; ///< of a row: many times the work that a thread's start is

void ShiftBlock(CRasterBuffer& from, CRasterBuffer& to, CPoint pt, CPoint ptMove) {
    const CRect rcTo(pt, to.GetBlockSize());
    const CRect rcBoth = from.GetRect().Intersect(to.GetRect());
    if (ptMove == CPoint{} && rcTo.Intersect(rcBoth) == rcTo)
        return to.ShareBlock(pt, from.GetBlock(pt, false));
    const CRect rcFrom(pt - ptMove, to.GetBlockSize());
    bool bAny = false;
    from.ForEachBlockIn(rcFrom, [&](CPoint ptFrom) { bAny = bAny || from.HasBlock(ptFrom); });
    if (!bAny) return;
    const auto spTile = from.ExtractBlock(rcFrom, false, nullptr);
    spTile->SetPosition(pt);
    spTile->ClearOutside(CRect(CPoint{} - pt, to.GetSize()));
    StoreNew(to, spTile);
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
    return {[ptMove](CRasterBuffer& from, CRasterBuffer& to, CPoint pt) { ShiftBlock(from, to, pt, ptMove); },
            [ptMove](CPoint pt) {
                return pt + CPoint{ptMove.x * PATH_UNITS, ptMove.y * PATH_UNITS};
            }};
}

void StoreNew(CRasterBuffer& plane, const boost::shared_ptr<CRasterBlockBuffer>& spTile) {
    spTile->SetOwner(&plane);
    plane.ShareBlock(spTile->GetPosition(), spTile);
}

uint64_t CountChangeSteps(CSize sz) {
    return static_cast<uint64_t>((sz.cy + DEFAULT_BLOCKSIZE.cy - 1) / DEFAULT_BLOCKSIZE.cy);
}

void ChangePlane(CRasterBuffer& from, CRasterBuffer& to, const TLayerChange& change, IProgress& progress) {
    const auto nColumns = static_cast<size_t>(to.GetBufferSize().cx);
    const size_t nThreads = std::clamp<size_t>(nColumns / BLOCKS_OF_THREAD, 1, AvailableThreads());
    for (int32_t y = 0; y < to.GetBufferSize().cy; ++y) {
        ForEachIndex(nColumns, nThreads,
                     [&](size_t x) { change.fnBlock(from, to, to.BlockCorner(static_cast<int32_t>(x), y)); });
        progress.Advance();
    }
}

boost::shared_ptr<CAlphaBufferImpl<uint8_t>> ChangeMask(const CAlphaBufferImpl<uint8_t>& mask, CSize sz,
                                                        const TLayerChange& change, IProgress& progress) {
    // A missing tile is 0 for every plane function, so what is changed is what the mask keeps back.
    CAlphaBufferImpl<uint8_t> changed;
    changed.Create(sz, mask.GetBlockSize());
    ChangePlane(*Inverted(mask), changed, change, progress);
    return Inverted(changed);
}
