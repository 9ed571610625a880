#include "core/RasterBuffer/SelectBuffer.h"

#include "core/RasterBuffer/SelectOutline.h"
#include "core/RasterKernel/BlendKernel.h"

#include <algorithm>
#include <cstring>

namespace {

boost::shared_ptr<CAlphaBlock8> CloneOf(const CAlphaBlock8& tile) {
    return boost::static_pointer_cast<CAlphaBlock8>(tile.Clone());
}

} // namespace

const boost::shared_ptr<CAlphaBlock8>& FullSelectTile() {
    static const auto s_spFull = [] {
        auto spTile = boost::make_shared<CAlphaBlock8>();
        spTile->Create(DEFAULT_BLOCKSIZE, {0, 0});
        std::memset(spTile->GetAlpha(), 255, spTile->GetPlaneBytes());
        return spTile;
    }();
    return s_spFull;
}

CSelectBuffer::CSelectBuffer(CSize szCanvas) : m_spMask(boost::make_shared<TMask>()), m_szCanvas(szCanvas) {
    m_spMask->Create(szCanvas, DEFAULT_BLOCKSIZE);
}

void CSelectBuffer::Store(CPoint pt, const TTilePtr& spTile) {
    const bool bFull = spTile && spTile->IsAll(255);
    const bool bNone = !spTile || spTile->IsAll(0);
    m_spMask->ShareBlockImpl(pt, bFull ? FullSelectTile() : bNone ? TTilePtr() : spTile);
}

void CSelectBuffer::SelectAll() {
    const TTilePtr& spFull = FullSelectTile();
    m_spMask->ForEachBlock([&](CPoint pt) { m_spMask->ShareBlockImpl(pt, spFull); });
}

void CSelectBuffer::Combine(ESelectMode mode, const CSelectBuffer& other) {
    SELF_CHECK(invalid_argument, other.m_szCanvas == m_szCanvas);
    const CAlphaBlock8* const pFull = FullSelectTile().get();
    TMask& mask = *m_spMask;
    mask.ForEachBlock([&](CPoint pt) {
        const TTilePtr spOther = other.m_spMask->FindShared(pt);
        const CAlphaBlock8* pHere = mask.FindBlock(pt);
        const size_t nCount = FullSelectTile()->GetPlaneBytes();
        TTilePtr spNew;
        if (mode == ESelectMode::Intersect) {
            if (!pHere || spOther.get() == pFull) return;
            if (!spOther || pHere == pFull) return mask.ShareBlockImpl(pt, spOther);
            const TTilePtr spOutside = CloneOf(*spOther);
            for (size_t i = 0; i < nCount; ++i) spOutside->GetAlpha()[i] ^= 255;
            spNew = CloneOf(*pHere);
            EraseCoverage(spNew->GetAlpha(), spOutside->GetAlpha(), nullptr, nCount);
        } else if (mode == ESelectMode::Add) {
            if (!spOther || pHere == pFull) return;
            if (!pHere || spOther.get() == pFull) return mask.ShareBlockImpl(pt, spOther);
            spNew = CloneOf(*pHere);
            uint8_t* const pNew = spNew->GetAlpha();
            std::transform(pNew, pNew + nCount, spOther->GetAlpha(), pNew,
                           [](uint8_t d, uint8_t s) { return std::max(d, s); });
        } else {
            if (!spOther || !pHere) return;
            if (spOther.get() == pFull) return mask.ShareBlockImpl(pt, {});
            spNew = CloneOf(*pHere);
            EraseCoverage(spNew->GetAlpha(), spOther->GetAlpha(), nullptr, nCount);
        }
        spNew->SetPosition(pt);
        Store(pt, spNew);
    });
}

CSelectBuffer::CSelectBuffer(CSize szCanvas, TMask& mask, CPoint ptMask) : CSelectBuffer(szCanvas) {
    const CAlphaBlock8* const pFull = FullSelectTile().get();
    m_spMask->ForEachBlockIn(CRect(ptMask, mask.GetSize()), [&](CPoint pt) {
        const CRect rcFrom(pt - ptMask, DEFAULT_BLOCKSIZE);
        bool bAny = false;
        bool bFull = rcFrom.Intersect(mask.GetRect()) == rcFrom;
        mask.ForEachBlockIn(rcFrom, [&](CPoint ptFrom) {
            const CAlphaBlock8* pTile = mask.FindBlock(ptFrom);
            bAny = bAny || pTile;
            bFull = bFull && pTile == pFull;
        });
        if (bAny && bFull) return m_spMask->ShareBlockImpl(pt, FullSelectTile());
        if (!bAny) return;
        const auto spTile = mask.ExtractBlock(rcFrom, false, nullptr);
        spTile->SetPosition(pt);
        Store(pt, boost::static_pointer_cast<CAlphaBlock8>(spTile));
    });
}

void CSelectBuffer::Shift(CPoint ptMove) {
    CSelectBuffer moved(m_szCanvas, *m_spMask, ptMove);
    m_spMask.swap(moved.m_spMask);
}

void CSelectBuffer::UpdateOutline() {
    TOutlineList lstOutline;
    const CRect rcBound = TraceOutline(*m_spMask, lstOutline);
    m_lstOutline.swap(lstOutline);
    m_rcBound = rcBound.IsEmpty() ? CRect(-1, -1, -1, -1) : rcBound;
}

size_t CSelectBuffer::GetBytes(const CSelectBuffer* pBeside) const {
    size_t nBytes = m_lstOutline.size() * sizeof(TOutlineSegment);
    m_spMask->ForEachBlock([&](CPoint pt) {
        const CAlphaBlock8* pTile = m_spMask->FindBlock(pt);
        const bool bShared =
            pTile == FullSelectTile().get() || (pBeside && pBeside->GetMaskTile(pt) == pTile);
        if (pTile && !bShared) nBytes += pTile->GetBytes();
    });
    return nBytes;
}

void ClearUnder(CRasterBuffer& plane, const CSelectBuffer& select) {
    const CAlphaBufferImpl<uint8_t>& mask = select.GetMask();
    SELF_CHECK(invalid_argument, plane.GetSize() == mask.GetSize() && plane.IsCompatible(mask));
    const auto spEraser = boost::make_shared<CAlphaBufferImpl<uint8_t>>();
    spEraser->Create({1, 1}, DEFAULT_BLOCKSIZE); // a plane that only carries the ink
    spEraser->SetErase(true);
    mask.ForEachBlock([&](CPoint pt) {
        const CAlphaBlock8* pTile = mask.FindBlock(pt);
        if (!pTile || !plane.HasBlock(pt)) return;
        if (pTile == FullSelectTile().get())
            plane.SetBlock(pt, {});
        else
            pTile->BlendCoverage(*plane.GetWritableBlock(pt), *spEraser, nullptr);
    });
}
