#include "app/common/PictureFiles.h"

#include "core/Base/Color.h"
#include "core/Platform/Bitmap.h"
#include "system/files/FilePath.h"
#include "system/files/FileStatus.h"

#include <algorithm>
#include <stdexcept>

namespace {

[[noreturn]] void Fail(const std::filesystem::path& path, const std::string& strWhat) {
    throw std::runtime_error(Utf8Of(path) + ": " + strWhat);
}

boost::shared_ptr<IBitmap> LoadBitmap(const std::filesystem::path& path, IImageCodecs& codecs, CSize& sz) {
    std::error_code error;
    if (!std::filesystem::exists(path, error)) Fail(path, "there is no such file");
    const auto spBitmap = codecs.Load(TextOf(path));
    if (!spBitmap || !spBitmap->GetWidth(sz.cx) || !spBitmap->GetHeight(sz.cy))
        Fail(path, "not a picture that can be read: damaged, cut short, of no known kind, or over " +
                       std::to_string(MAX_IMAGE_SIDE) + " pixels on a side");
    return spBitmap;
}

/// Calls `fn(pixel index, B, G, R, A bytes)` for every pixel.
template <class Function>
void ForEachPixel(const std::filesystem::path& path, IBitmap& bitmap, CSize sz, ELockMode mode, Function fn) {
    TLockedBits bits;
    if (!bitmap.LockBits(CRect({0, 0}, sz), mode, bits)) Fail(path, "there is no memory for the picture");
    size_t i = 0;
    for (int32_t y = 0; y < sz.cy; ++y) {
        uint8_t* pPixel = bits.pData + static_cast<ptrdiff_t>(y) * bits.nStride;
        for (int32_t x = 0; x < sz.cx; ++x, pPixel += 4) fn(i++, pPixel);
    }
    bitmap.UnlockBits();
}

template <class Function>
void SaveBitmap(const std::filesystem::path& path, CSize sz, IImageCodecs& codecs, Function fn) {
    const auto spBitmap = codecs.CreateBitmap(sz);
    if (!spBitmap) Fail(path, "there is no memory for the picture");
    ForEachPixel(path, *spBitmap, sz, ELockMode::Write, fn);
    if (!codecs.Save(TextOf(path), *spBitmap)) Fail(path, "the picture cannot be written");
}

} // namespace

THostPicture LoadPicture(const std::filesystem::path& path, IImageCodecs& codecs) {
    CSize sz;
    const auto spBitmap = LoadBitmap(path, codecs, sz);
    const size_t nPixels = static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy);
    THostPicture picture{CRect({0, 0}, sz), {}, {}, {}, {}, {}};
    for (auto* pPlane : {&picture.vRed, &picture.vGreen, &picture.vBlue, &picture.vTransparency})
        pPlane->resize(nPixels);
    ForEachPixel(path, *spBitmap, sz, ELockMode::Read, [&](size_t i, const uint8_t* pBgra) {
        picture.vBlue[i] = pBgra[0];
        picture.vGreen[i] = pBgra[1];
        picture.vRed[i] = pBgra[2];
        picture.vTransparency[i] = pBgra[3];
    });
    const auto& vAlpha = picture.vTransparency;
    if (std::all_of(vAlpha.begin(), vAlpha.end(), [](uint8_t u) { return u == 255; }))
        picture.vTransparency = {};
    return picture;
}

THostPicture::TPlane LoadAlpha(const std::filesystem::path& path, CSize sz, IImageCodecs& codecs) {
    CSize szAlpha;
    const auto spBitmap = LoadBitmap(path, codecs, szAlpha);
    if (!(szAlpha == sz)) Fail(path, "a further channel must have the size of the picture");
    THostPicture::TPlane vAlpha(static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy));
    ForEachPixel(path, *spBitmap, sz, ELockMode::Read,
                 [&](size_t i, const uint8_t* pBgra) { vAlpha[i] = GreyOf(pBgra[2], pBgra[1], pBgra[0]); });
    return vAlpha;
}

void CheckSave(const std::filesystem::path& path, bool bKnown) {
    if (!bKnown) Fail(path, "no picture format has this ending");
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) Fail(path, "this is a folder");
    if (!IsOpenFolder(std::filesystem::absolute(path).parent_path()))
        Fail(path, "its folder is missing or read-only");
}

void SavePicture(const std::filesystem::path& path, const THostPicture& picture, IImageCodecs& codecs) {
    SaveBitmap(path, picture.rc.Size(), codecs, [&](size_t i, uint8_t* pBgra) {
        pBgra[0] = picture.vBlue[i];
        pBgra[1] = picture.vGreen[i];
        pBgra[2] = picture.vRed[i];
        pBgra[3] = picture.vTransparency.empty() ? 255 : picture.vTransparency[i];
    });
}

void SaveAlpha(const std::filesystem::path& path, const THostPicture::TPlane& vAlpha, CSize sz,
               IImageCodecs& codecs) {
    SaveBitmap(path, sz, codecs, [&](size_t i, uint8_t* pBgra) {
        std::fill_n(pBgra, 3, vAlpha[i]);
        pBgra[3] = 255;
    });
}
