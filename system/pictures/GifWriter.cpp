#include "system/pictures/GifWriter.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <vector>

#include <gif_lib.h>

namespace {

constexpr int MAX_SIDE = 65535;

int AppendBytes(GifFileType* pGif, const GifByteType* pBytes, int cb) {
    try {
        static_cast<std::string*>(pGif->UserData)
            ->append(reinterpret_cast<const char*>(pBytes), static_cast<size_t>(cb));
        return cb;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

struct TFreeMap {
    void operator()(ColorMapObject* pMap) const { GifFreeMapObject(pMap); }
};

std::unique_ptr<ColorMapObject, TFreeMap> MakeColorMap(const QList<QRgb>& lstColors) {
    // The length of the colour table is a power of two.
    const auto nColors = std::bit_ceil(std::max<unsigned>(static_cast<unsigned>(lstColors.size()), 2));
    std::unique_ptr<ColorMapObject, TFreeMap> pMap(GifMakeMapObject(static_cast<int>(nColors), nullptr));
    if (!pMap) return nullptr;
    for (qsizetype i = 0; i < lstColors.size(); ++i)
        pMap->Colors[i] = {static_cast<GifByteType>(qRed(lstColors[i])),
                           static_cast<GifByteType>(qGreen(lstColors[i])),
                           static_cast<GifByteType>(qBlue(lstColors[i]))};
    return pMap;
}

bool PutPicture(GifFileType* pGif, const QImage& image, const ColorMapObject* pMap) {
    const int nWidth = image.width();
    if (EGifPutScreenDesc(pGif, nWidth, image.height(), 8, 0, pMap) != GIF_OK ||
        EGifPutImageDesc(pGif, 0, 0, nWidth, image.height(), false, nullptr) != GIF_OK)
        return false;
    std::vector<GifPixelType> vRow(static_cast<size_t>(nWidth)); // the library overwrites the row
    for (int y = 0; y < image.height(); ++y) {
        std::copy_n(image.constScanLine(y), nWidth, vRow.data());
        if (EGifPutLine(pGif, vRow.data(), nWidth) != GIF_OK) return false;
    }
    return true;
}

} // namespace

std::optional<std::string> EncodeGif(const QImage& imageIndexed) {
    if (imageIndexed.width() > MAX_SIDE || imageIndexed.height() > MAX_SIDE) return std::nullopt;
    const auto pMap = MakeColorMap(imageIndexed.colorTable());
    std::string strBytes;
    int nError = 0;
    GifFileType* pGif = pMap ? EGifOpen(&strBytes, AppendBytes, &nError) : nullptr;
    if (!pGif) return std::nullopt;
    const bool bDone = PutPicture(pGif, imageIndexed, pMap.get());
    if (EGifCloseFile(pGif, &nError) != GIF_OK || !bDone) return std::nullopt;
    return strBytes;
}
