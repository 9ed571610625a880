#include "ui/platform/posix/BlockMime.h"

#include "core/ImageFile/DibBlock.h"
#include "system/pictures/QtBitmap.h"
#include "ui/platform/BlockPng.h"

#include <QStringList>

#include <new>

namespace {

/// In Qt's terms the picture itself, from which it makes the system's own forms.
const QLatin1String IMAGE("application/x-qt-image");
const QLatin1String PNG("image/png");
const QLatin1String BMP("image/bmp");

QImage MakeImage(const TDibBytes& spBlock) {
    const TLoadedPicture picture = ReadDibBlock(spBlock, EZeroAlpha::Transparent);
    return picture ? CopyToImage(*picture) : QImage();
}

QByteArray MakeBmp(const std::string& strBlock) {
    QByteArray bytes = QByteArray::fromStdString(MakeBmpFileHeader(strBlock));
    return bytes.append(strBlock.data(), static_cast<qsizetype>(strBlock.size()));
}

} // namespace

QStringList CBlockMime::formats() const { return {PNG, BMP, IMAGE}; }

QVariant CBlockMime::retrieveData(const QString& strMime, QMetaType) const try {
    if (strMime == PNG && m_png.isEmpty()) m_png = MakeBlockPng(m_spBlock);
    if (strMime == PNG) return m_png;
    if (strMime == BMP) return MakeBmp(*m_spBlock);
    return strMime == IMAGE ? QVariant(MakeImage(m_spBlock)) : QVariant();
} catch (const std::bad_alloc&) {
    return {}; // Qt calls this and must not be unwound
}
