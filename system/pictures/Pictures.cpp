#include "system/pictures/Pictures.h"

#include "system/pictures/QtBitmap.h"

#include <QBuffer>
#include <QByteArray>

namespace {

constexpr std::string_view PNG_HEAD = "data:image/png;base64,";
constexpr std::string_view BLOCK_HEAD = "data:image/x-dib;base64,";
constexpr std::string_view STROKES_HEAD = "data:application/x-vellumcraft-strokes;base64,";

} // namespace

boost::shared_ptr<IBitmap> CopyPicture(IBitmap& bitmap) { return MakeBitmap(CopyToImage(bitmap)); }

std::string WritePictureText(IBitmap& bitmap) {
    const QImage image = CopyToImage(bitmap);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG")) return {};
    return std::string(PNG_HEAD) + bytes.toBase64().toStdString();
}

bool IsPictureText(std::string_view strText) { return strText.starts_with(PNG_HEAD); }

std::string WriteBlockText(const std::string& strBlock) {
    return std::string(BLOCK_HEAD) + QByteArray::fromStdString(strBlock).toBase64().toStdString();
}

bool IsBlockText(std::string_view strText) { return strText.starts_with(BLOCK_HEAD); }

std::string WriteStrokesText(const std::string& strStrokes) {
    return std::string(STROKES_HEAD) + QByteArray::fromStdString(strStrokes).toBase64().toStdString();
}

bool IsStrokesText(std::string_view strText) { return strText.starts_with(STROKES_HEAD); }

std::string ReadPictureText(std::string_view strText) {
    strText.remove_prefix(strText.find(',') + 1);
    return QByteArray::fromBase64({strText.data(), static_cast<qsizetype>(strText.size())}).toStdString();
}
