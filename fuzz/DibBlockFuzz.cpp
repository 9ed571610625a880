// Fuzzes the reader of the clipboard's blocks, alone and behind the header of a file: an accepted picture is
// read to its last byte, and survives being written and read again.
#include "core/ImageFile/DibBlock.h"

#include <boost/make_shared.hpp>

#include <cstdlib>
#include <cstring>

namespace {

struct TPixels {
    CSize size;
    std::string strBytes; ///< top row first
    friend bool operator==(const TPixels&, const TPixels&) = default;
};

TPixels Take(IBitmap& bitmap) {
    TPixels pixels;
    TLockedBits bits;
    if (!bitmap.GetWidth(pixels.size.cx) || !bitmap.GetHeight(pixels.size.cy) ||
        !bitmap.LockBits(CRect({0, 0}, pixels.size), ELockMode::Read, bits))
        std::abort();
    for (ptrdiff_t y = 0; y < pixels.size.cy; ++y)
        pixels.strBytes.append(reinterpret_cast<const char*>(bits.pData + y * bits.nStride),
                               static_cast<size_t>(pixels.size.cx) * 4);
    bitmap.UnlockBits();
    return pixels;
}

void Check(const TLoadedPicture& picture) {
    if (!picture) return;
    const TDibBytes spBlock = MakeDibBlock(*picture);
    const TLoadedPicture again = ReadDibBlock(spBlock, EZeroAlpha::Transparent);
    if (!again || !(Take(*again) == Take(*picture))) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    const auto spBytes = boost::make_shared<std::string>(reinterpret_cast<const char*>(pData), nSize);
    Check(ReadDibBlock(spBytes));
    Check(ReadBmpFile(spBytes));
    return 0;
}
