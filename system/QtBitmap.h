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

/// Resolution of pictures that are written: 96 to the inch, else Qt would write what the screen has.
constexpr int DOTS_PER_METRE = 3780;

/// A bitmap's pixels, locked for reading.
class CLockedImage {
public:
    explicit CLockedImage(IBitmap& bitmap);
    ~CLockedImage();
    CLockedImage(const CLockedImage&) = delete;
    CLockedImage& operator=(const CLockedImage&) = delete;

    /// The pixels at 96 to the inch; null when the bitmap could not be locked. Valid while this lives.
    const QImage& GetImage() const { return m_image; }

private:
    IBitmap& m_bitmap;
    bool m_bLocked = false;
    QImage m_image;
};

/// A picture of its own with a bitmap's pixels; null when there is no memory or the bitmap cannot be locked.
QImage CopyToImage(IBitmap& bitmap);

/// The seam's bitmap of a picture; null for a null picture and when there is no memory.
boost::shared_ptr<IBitmap> MakeBitmap(const QImage& image);

/// A transparent Format_ARGB32 picture, null when the size is not positive, a side is over MAX_IMAGE_SIDE or
/// there is no memory.
QImage MakeTransparentImage(CSize sz);
