// Picture files made in memory.
#pragma once

#include "core/Platform/Bitmap.h"
#include "system/QtBitmap.h"

#include <QBuffer>
#include <QImageWriter>

#include <string>

/// A file as Qt writes it; a compression of -1 is the format's own.
inline std::string EncodeByQt(const QImage& image, const char* pszFormat, int nCompression = -1) {
    QBuffer buffer;
    QImageWriter writer(&buffer, pszFormat);
    writer.setCompression(nCompression);
    return writer.write(image) ? buffer.data().toStdString() : std::string();
}

/// Every pixel differs in colour and alpha from its neighbours.
inline QImage MakeSoftImage(int nWidth, int nHeight) {
    QImage image(nWidth, nHeight, QImage::Format_ARGB32);
    for (int y = 0; y < nHeight; ++y)
        for (int x = 0; x < nWidth; ++x) image.setPixel(x, y, qRgba(x * 5, y * 3, x ^ y, x + y * 7));
    return image;
}

/// The pixels of a bitmap that the codecs made, null for none.
inline QImage ImageOf(const boost::shared_ptr<IBitmap>& spBitmap) {
    const auto* pBitmap = dynamic_cast<const CQtBitmap*>(spBitmap.get());
    return pBitmap ? pBitmap->GetImage() : QImage();
}

/// A number in the byte order of BMP and little-endian TIFF.
inline std::string Little(uint64_t u, int cb) {
    std::string str;
    for (int i = 0; i < cb; ++i) str += static_cast<char>(u >> 8 * i);
    return str;
}
