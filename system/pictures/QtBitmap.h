// IBitmap over a QImage.
#pragma once

#include "core/Platform/Bitmap.h"

#include <QImage>

/// Owns its picture. Locking exposes the picture's own memory, whose bytes are B, G, R, A on a
/// little-endian machine.
class CQtBitmap : public IBitmap {
public:
    /// Converts other formats to Format_ARGB32, in place where Qt can; drops a colour space.
    explicit CQtBitmap(QImage image);

    bool GetWidth(int32_t& nWidth) override;
    bool GetHeight(int32_t& nHeight) override;
    bool LockBits(const CRect& rc, ELockMode mode, TLockedBits& bits) override;
    bool UnlockBits() override;

    /// The picture; null when there was no memory for the conversion.
    const QImage& GetImage() const { return m_image; }

private:
    QImage m_image;
    bool m_bLocked = false;
};

/// Resolution of written pictures, 96 dots per inch; without it Qt would write the screen's.
constexpr int DOTS_PER_METRE = 3780;

/// A bitmap's pixels, locked for reading.
class CLockedImage {
public:
    explicit CLockedImage(IBitmap& bitmap);
    ~CLockedImage();
    CLockedImage(const CLockedImage&) = delete;
    CLockedImage& operator=(const CLockedImage&) = delete;

    /// The pixels at 96 dots per inch; null when the bitmap could not be locked. Valid while this lives.
    const QImage& GetImage() const { return m_image; }

private:
    IBitmap& m_bitmap;
    bool m_bLocked = false;
    QImage m_image;
};

/// Copies a bitmap's pixels; null when there is no memory or the bitmap cannot be locked.
QImage CopyToImage(IBitmap& bitmap);

/// Wraps a picture in an IBitmap; null for a null picture and when there is no memory.
boost::shared_ptr<IBitmap> MakeBitmap(const QImage& image);

/// A transparent Format_ARGB32 picture, null when the size is not positive, a side is over MAX_IMAGE_SIDE or
/// there is no memory.
QImage MakeTransparentImage(CSize sz);
