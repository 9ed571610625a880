// Definitions of CPlanarBlockBuffer, included only by the sources of the two final tile classes.
#pragma once

#include "core/Base/Failure.h"
#include "core/Platform/Bitmap.h"
#include "core/RasterBuffer/PlanarBlockBuffer.h"
#include "core/RasterBuffer/RasterBuffer.h"
#include "core/RasterKernel/ReduceKernel.h"
#include "core/RasterKernel/ResolveKernel.h"
#include "core/RasterKernel/WireKernel.h"

#include <boost/make_shared.hpp>

#include <algorithm>

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::Create(CSize szBlock, CPoint ptPos) {
    Allocate(szBlock, ptPos, PLANES);
    Clear();
}

template <class Tile, size_t PLANES>
boost::shared_ptr<CRasterBlockBuffer> CPlanarBlockBuffer<Tile, PLANES>::Clone() const {
    auto spTile = boost::make_shared<Tile>();
    spTile->Allocate(m_szBlock, m_ptPos, PLANES);
    spTile->m_pOwner = m_pOwner;
    std::memcpy(spTile->m_pFirst, m_pFirst, GetPlaneBytes() * PLANES);
    return spTile;
}

template <class Tile, size_t PLANES>
boost::shared_ptr<CRasterBlockBuffer> CPlanarBlockBuffer<Tile, PLANES>::CreateBlank(CSize sz) const {
    auto spTile = boost::make_shared<Tile>();
    spTile->Create(sz, m_ptPos);
    spTile->m_pOwner = m_pOwner;
    return spTile;
}

template <class Tile, size_t PLANES>
boost::shared_ptr<CRasterBlockBuffer> CPlanarBlockBuffer<Tile, PLANES>::CreateReduced(CSize sz, int iScale,
                                                                                      CSize szInside) const {
    SELF_CHECK(invalid_argument, iScale > 0);
    auto spTile = boost::make_shared<Tile>();
    spTile->Create(sz, {m_ptPos.x / iScale, m_ptPos.y / iScale});
    const std::vector<uint8_t> vInside = InsideBytes(szInside);
    std::vector<uint8_t> vWeights(vInside);
    for (size_t i = 0; i < vWeights.size(); ++i) vWeights[i] &= GetAlpha()[i];
    for (size_t n = 0; n + 1 < PLANES; ++n)
        ReducePlane(spTile->GetPlane(n), sz, GetPlane(n), vWeights.empty() ? GetAlpha() : vWeights.data(),
                    m_szBlock);
    ReducePlane(spTile->GetAlpha(), sz, GetAlpha(), vInside.empty() ? nullptr : vInside.data(), m_szBlock);
    return spTile;
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::BlendInto(CRasterBlockBuffer& dest,
                                                 const CRasterBlockBuffer* pMask) const {
    BlendWith(dest, m_pOwner ? m_pOwner->GetOpacity() : 255, pMask);
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::ReadHead(CDeserializer& reader) {
    reader.ExpectTag(Tile::CHUNK_TAG);
    const CSize szBlock = reader.ReadSize();
    const CPoint ptPos = reader.ReadPoint();
    if (szBlock.cx <= 0 || szBlock.cy <= 0) throw deserialize_error();
    const uint64_t uPixels = static_cast<uint64_t>(szBlock.cx) * static_cast<uint64_t>(szBlock.cy);
    if (uPixels > reader.GetRest() / PLANES || uPixels * PLANES != reader.GetRest())
        throw deserialize_error();
    m_szBlock = szBlock;
    m_ptPos = ptPos;
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::Deserialize(CDeserializer& reader) {
    // The pixels are known to be present before memory is allocated for them.
    ReadHead(reader);
    const size_t nBytes = GetWireSize();
    // A chunk in memory still refers to its tile, whose kind the tag has determined.
    const auto* pTile = static_cast<const Tile*>(reader.ReadPart(nBytes));
    const uint8_t* pWire = pTile ? nullptr : reader.ReadBytes(nBytes);
    Allocate(m_szBlock, m_ptPos, PLANES);
    if (pTile)
        std::memcpy(m_pFirst, pTile->m_pFirst, nBytes);
    else
        Deinterleave(static_cast<Tile*>(this)->Pixels(), pWire, GetPlaneBytes());
    reader.ExpectEnd();
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::LayOnWhite() {
    const uint8_t* pAlpha = GetAlpha();
    for (size_t n = 0; n + 1 < PLANES; ++n) {
        uint8_t* pPlane = GetPlane(n);
        for (size_t i = 0; i < GetPlaneBytes(); ++i)
            pPlane[i] = ResolveOnWhite(pPlane[i], CoverageOf(pAlpha[i]));
    }
    std::memset(GetAlpha(), 255, GetPlaneBytes());
}

template <class Tile, size_t PLANES>
CSerializer CPlanarBlockBuffer<Tile, PLANES>::Serialize() const {
    CSerializer writer;
    writer.SetTag(Tile::CHUNK_TAG, 0);
    writer.WriteSize(m_szBlock);
    writer.WritePoint(m_ptPos);
    writer.WritePart(this->shared_from_this());
    return writer;
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::WriteWire(uint8_t* pTo) const {
    Interleave(pTo, static_cast<const Tile*>(this)->Pixels(), GetPlaneBytes());
}

/// Locks the part of a bitmap under `rc` and passes it row by row to `fn(row, pixels, width)`.
template <class RowFunction>
void ForEachBitmapRow(CBitmapSession& session, const CRect& rc, ELockMode mode, RowFunction fn) {
    int32_t nWidth = 0;
    int32_t nHeight = 0;
    if (!session.spBitmap->GetWidth(nWidth)) session.bOk = false;
    if (!session.spBitmap->GetHeight(nHeight)) session.bOk = false;
    const CRect rcLock = rc.Intersect({0, 0, nWidth, nHeight});
    if (rcLock.IsEmpty()) return;
    TLockedBits bits;
    if (!session.spBitmap->LockBits(rcLock, mode, bits)) {
        session.bOk = false;
        throw internal_error(L"Gdiplus::LockBits() failed.");
    }
    for (int32_t y = 0; y < rcLock.Height(); ++y)
        fn(y, bits.pData + static_cast<ptrdiff_t>(y) * bits.nStride, rcLock.Width());
    if (!session.spBitmap->UnlockBits()) session.bOk = false;
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::ReadBitmap(CBitmapSession& session) {
    ForEachBitmapRow(
        session, GetRect(), ELockMode::Read, [&](int32_t y, const uint8_t* pRow, int32_t nWidth) {
            const size_t nOffset = Offset({0, y});
            for (int32_t x = 0; x < nWidth; ++x)
                static_cast<Tile*>(this)->LoadPixel(nOffset + static_cast<size_t>(x), pRow + x * 4);
        });
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::WriteBitmap(CBitmapSession& session) const {
    ForEachBitmapRow(session, GetRect(), ELockMode::Write, [&](int32_t y, uint8_t* pRow, int32_t nWidth) {
        const size_t nOffset = Offset({0, y});
        for (int32_t x = 0; x < nWidth; ++x)
            static_cast<const Tile*>(this)->StorePixel(nOffset + static_cast<size_t>(x), pRow + x * 4);
    });
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::ExtractTo(CRasterBlockBuffer& dest, CPoint ptDest, bool bCut,
                                                 const CRasterBlockBuffer* pMask) {
    auto* pTile = dynamic_cast<Tile*>(&dest);
    SELF_CHECK(invalid_argument, pTile != nullptr);
    CPoint ptMove;
    const CRect rc = OverlapWith(dest, ptDest, ptMove);
    const uint8_t* pMaskBytes = MaskBytes(pMask, dest.GetSize());
    if (rc.IsEmpty()) return;
    const size_t nWidth = static_cast<size_t>(rc.Width());
    for (int32_t y = rc.top; y < rc.bottom; ++y) {
        const size_t nDest = pTile->Offset({rc.left, y});
        const size_t nHere = Offset(CPoint{rc.left, y} + ptMove);
        for (size_t n = 0; n + 1 < PLANES; ++n)
            std::memcpy(pTile->GetPlane(n) + nDest, GetPlane(n) + nHere, nWidth);
        uint8_t* pTaken = pTile->GetAlpha() + nDest;
        uint8_t* pAlpha = GetAlpha() + nHere;
        if (!pMaskBytes) {
            std::memcpy(pTaken, pAlpha, nWidth);
            if (bCut) std::memset(pAlpha, 0, nWidth);
            continue;
        }
        const uint8_t* pRestrict = pMaskBytes + nDest;
        for (size_t x = 0; x < nWidth; ++x) {
            pTaken[x] = std::min(pAlpha[x], pRestrict[x]);
            if (bCut) pAlpha[x] = static_cast<uint8_t>(pAlpha[x] - pTaken[x]);
        }
    }
}

template <class Tile, size_t PLANES>
void CPlanarBlockBuffer<Tile, PLANES>::PasteFrom(const CRasterBlockBuffer& src, CPoint ptSrc) {
    const auto* pTile = dynamic_cast<const Tile*>(&src);
    SELF_CHECK(invalid_argument, pTile != nullptr);
    CPoint ptMove;
    const CRect rc = OverlapWith(src, ptSrc, ptMove);
    for (int32_t y = rc.top; y < rc.bottom && !rc.IsEmpty(); ++y)
        static_cast<Tile*>(this)->BlendRow(Offset(CPoint{rc.left, y} + ptMove), *pTile,
                                           pTile->Offset({rc.left, y}), static_cast<size_t>(rc.Width()));
}
