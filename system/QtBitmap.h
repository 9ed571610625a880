// The seam's bitmap over a QImage.
#pragma once

#include "core/Platform/Bitmap.h"

#include <QImage>

/// Owns its picture; locking shows the picture's own memory, which on a little-endian machine holds B, G, R,
/// A.
class CQtBitmap : public IBitmap {
public:
    /// Other formats than Format_ARGB32 are converted, in place where Qt can; a colour space is dropped.
    explicit CQtBitmap(QImage image);

    bool GetWidth(int32_t& nWidth) override;
    bool GetHeight(int32_t& nHeight) override;
    bool LockBits(const CRect& rc, ELockMode mode, TLockedBits& bits) override;
    bool UnlockBits() override;

    /// The picture, null when the conversion found no memory.
    const QImage& GetImage() const { return m_image; }

private:
    QImage m_image;
    bool m_bLocked = false;
};

/// A transparent Format_ARGB32 picture, null when the size is not positive, a side is over MAX_IMAGE_SIDE or
/// there is no memory.
QImage MakeTransparentImage(CSize sz);
