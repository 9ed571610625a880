#include "system/pictures/PngBytes.h"

#include <new>

#include <png.h>

std::string EncodePng(const TPicture& picture) {
    constexpr size_t PICTURE_BYTES = 4, PNG_BYTES = 3;
    std::vector<uint8_t> vRows;
    vRows.reserve(picture.vPixels.size() / PICTURE_BYTES * PNG_BYTES);
    for (size_t i = 0; i < picture.vPixels.size(); i += PICTURE_BYTES)
        vRows.insert(vRows.end(), picture.vPixels.begin() + static_cast<ptrdiff_t>(i),
                     picture.vPixels.begin() + static_cast<ptrdiff_t>(i + PNG_BYTES));
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.sz.cx);
    image.height = static_cast<png_uint_32>(picture.sz.cy);
    image.format = PNG_FORMAT_BGR;
    image.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t nBytes = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::string strPng(nBytes, '\0');
    // With memory for the largest file, only a lack of memory can make it fail.
    if (!png_image_write_to_memory(&image, strPng.data(), &nBytes, 0, vRows.data(), 0, nullptr))
        throw std::bad_alloc();
    strPng.resize(nBytes);
    return strPng;
}
