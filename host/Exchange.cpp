// Colour planes have a byte plane for each channel, so the host reads and writes them directly. Other
// planes are exchanged through a bitmap, whose pixels are B, G, R, A.
#include "host/Exchange.h"

#include "core/AppModule/AppModule.h"
#include "core/Base/Failure.h"
#include "core/Platform/Bitmap.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

/// The plane of a colour tile (R, G, B or A) for a channel type; nullopt for an unknown type.
std::optional<size_t> TilePlaneOf(int nType) {
    switch (nType) {
    case ctRed:
        return 0;
    case ctGreen:
        return 1;
    case ctBlue:
        return 2;
    case ctTransparency:
        return 3;
    default:
        return std::nullopt;
    }
}

/// The first bit of a channel type's byte in a bitmap's pixel; nullopt for an unknown type.
std::optional<int32_t> BitOffsetOf(int nType) {
    switch (nType) {
    case ctRed:
        return 16;
    case ctGreen:
        return 8;
    case ctBlue:
        return 0;
    case ctTransparency:
        return 24;
    default:
        return std::nullopt;
    }
}

/// Calls `fn(channel, memory)` for each channel that has a place in the tile.
template <class Function>
void ForEachTileChannel(const std::vector<THostChannel>& lstHostChannels, CColorRasterBlockBuffer& tile,
                        Function fn) {
    TPixelMemory memory{.nRowBits = tile.GetSize().cx * 8, .nColBits = 8};
    for (const THostChannel& channel : lstHostChannels) {
        if (const auto nPlane = TilePlaneOf(channel.nType)) memory.pData = tile.GetPlane(*nPlane);
        if (memory.pData) fn(channel, memory);
    }
}

/// As ForEachTileChannel, for a locked rectangle of a bitmap.
template <class Function>
void ForEachBitmapChannel(const std::vector<THostChannel>& lstHostChannels, const TLockedBits& bits,
                          Function fn) {
    std::optional<int32_t> nBitOffset;
    for (const THostChannel& channel : lstHostChannels) {
        if (const auto nOffset = BitOffsetOf(channel.nType)) nBitOffset = nOffset;
        if (nBitOffset) fn(channel, TPixelMemory{bits.pData, bits.nStride * 8, 32, *nBitOffset});
    }
}

/// The block's pixels that belong to the plane.
CRect PlaneRectOf(const CRasterBuffer& plane, CPoint ptBlock) {
    return CRect(ptBlock, plane.GetBlockSize()).Intersect(CRect({0, 0}, plane.GetSize()));
}

CRect Offset(const CRect& rc, int32_t nLeft, int32_t nTop) {
    return {rc.left + nLeft, rc.top + nTop, rc.right + nLeft, rc.bottom + nTop};
}

boost::shared_ptr<IBitmap> MakeBitmap(CSize sz) {
    boost::shared_ptr<IBitmap> spBitmap = g_AppModule.GetPlatform().codecs.CreateBitmap(sz);
    if (!spBitmap) throw internal_error(L"Gdiplus::Bitmap() failed.");
    return spBitmap;
}

TLockedBits Lock(IBitmap& bitmap, const CRect& rc, ELockMode mode) {
    TLockedBits bits;
    if (!bitmap.LockBits(rc, mode, bits)) throw internal_error(L"Gdiplus::LockBits() failed.");
    return bits;
}

void SetOpaque(const TLockedBits& bits, CSize sz) {
    for (int32_t y = 0; y < sz.cy; ++y)
        for (int32_t x = 0; x < sz.cx; ++x)
            bits.pData[static_cast<ptrdiff_t>(y) * bits.nStride + x * 4 + 3] = 255;
}

} // namespace

void ReadHostChannels(CRasterBuffer& plane, const std::vector<THostChannel>& lstHostChannels,
                      IHostImage& host, int32_t nLeft, int32_t nTop) {
    if (dynamic_cast<CColorRasterBuffer*>(&plane)) {
        plane.ForEachBlock([&](CPoint ptBlock) {
            const auto spBlock =
                boost::static_pointer_cast<CColorRasterBlockBuffer>(plane.GetWritableBlock(ptBlock));
            std::memset(spBlock->GetAlpha(), 255, spBlock->GetPlaneBytes());
            const CRect rc = Offset(PlaneRectOf(plane, ptBlock), nLeft, nTop);
            ForEachTileChannel(lstHostChannels, *spBlock,
                               [&](const THostChannel& channel, const TPixelMemory& memory) {
                                   host.Read(channel, rc, memory);
                               });
        });
        return;
    }
    CBitmapSession session{MakeBitmap(plane.GetSize())};
    plane.ForEachBlock([&](CPoint ptBlock) {
        const CRect rcPlane = PlaneRectOf(plane, ptBlock);
        const TLockedBits bits = Lock(*session.spBitmap, rcPlane, ELockMode::Write);
        SetOpaque(bits, rcPlane.Size());
        ForEachBitmapChannel(lstHostChannels, bits,
                             [&](const THostChannel& channel, const TPixelMemory& memory) {
                                 host.Read(channel, Offset(rcPlane, nLeft, nTop), memory);
                             });
        session.spBitmap->UnlockBits();
        plane.GetWritableBlock(ptBlock)->ReadBitmap(session);
    });
}

void WriteHostChannels(const std::vector<THostChannel>& lstHostChannels, CRasterBuffer& plane,
                       IHostImage& host, int32_t nLeft, int32_t nTop) {
    // A host without transparency gets the pixels on white: the colours alone would show erased pixels
    // again.
    const bool bTransparency =
        std::ranges::any_of(lstHostChannels, [](auto& channel) { return channel.nType == ctTransparency; });
    const auto shownAt = [&](CPoint ptBlock) {
        const auto spBlock = plane.GetBlockOrBlank(ptBlock);
        if (bTransparency) return spBlock;
        const auto spLaid = spBlock->Clone();
        spLaid->LayOnWhite();
        return spLaid;
    };
    if (dynamic_cast<CColorRasterBuffer*>(&plane)) {
        plane.ForEachBlock([&](CPoint ptBlock) {
            const auto spBlock = boost::static_pointer_cast<CColorRasterBlockBuffer>(shownAt(ptBlock));
            const CRect rc = Offset(PlaneRectOf(plane, ptBlock), nLeft, nTop);
            ForEachTileChannel(lstHostChannels, *spBlock,
                               [&](const THostChannel& channel, const TPixelMemory& memory) {
                                   host.Write(channel, rc, memory);
                               });
        });
        return;
    }
    CBitmapSession session{MakeBitmap(plane.GetSize())};
    plane.ForEachBlock([&](CPoint ptBlock) { shownAt(ptBlock)->WriteBitmap(session); });
    plane.ForEachBlock([&](CPoint ptBlock) {
        const CRect rcPlane = PlaneRectOf(plane, ptBlock);
        const TLockedBits bits = Lock(*session.spBitmap, rcPlane, ELockMode::Read);
        ForEachBitmapChannel(lstHostChannels, bits,
                             [&](const THostChannel& channel, const TPixelMemory& memory) {
                                 host.Write(channel, Offset(rcPlane, nLeft, nTop), memory);
                             });
        session.spBitmap->UnlockBits();
    });
}
