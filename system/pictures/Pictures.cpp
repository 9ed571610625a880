#include "system/pictures/Pictures.h"

#include "system/pictures/QtBitmap.h"

#include <QBuffer>
#include <QByteArray>

namespace {

constexpr std::string_view HEAD = "data:image/png;base64,";

}

boost::shared_ptr<IBitmap> CopyPicture(IBitmap& bitmap) { return MakeBitmap(CopyToImage(bitmap)); }

std::string WritePictureText(IBitmap& bitmap) {
    const QImage image = CopyToImage(bitmap);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG")) return {};
    return std::string(HEAD) + bytes.toBase64().toStdString();
}

bool IsPictureText(std::string_view strText) { return strText.starts_with(HEAD); }

std::string ReadPictureText(std::string_view strText) {
    strText.remove_prefix(HEAD.size());
    return QByteArray::fromBase64({strText.data(), static_cast<qsizetype>(strText.size())}).toStdString();
}
