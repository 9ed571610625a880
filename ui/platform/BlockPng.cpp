#include "ui/platform/BlockPng.h"

#include "core/ImageFile/DibBlock.h"
#include "system/pictures/QtBitmap.h"

#include <QBuffer>

namespace {

constexpr int FAST_PNG = 85; ///< a low compression: a program is waiting

} // namespace

QByteArray MakeBlockPng(const TDibBytes& spBlock) {
    const TLoadedPicture picture = ReadDibBlock(spBlock, EZeroAlpha::Transparent);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!picture || !buffer.open(QIODevice::WriteOnly)) return {};
    const bool bSaved = CLockedImage(*picture).GetImage().save(&buffer, "PNG", FAST_PNG);
    return bSaved ? bytes : QByteArray();
}
