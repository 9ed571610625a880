// Pictures outside the tiled planes: 32-bit B, G, R, A bitmaps with rectangle locking, and the codecs that
// read and write them.
#pragma once

#include "core/Base/FileFailure.h"
#include "core/Base/Geometry.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

enum class ELockMode { Read, Write };

/// A locked rectangle: row y starts at pData + y * nStride, each pixel is B, G, R, A with straight alpha.
struct TLockedBits {
    uint8_t* pData = nullptr;
    int nStride = 0;
};

/// A 32-bit bitmap. One rectangle is locked at a time. Operations answer false on failure and do not throw.
class IBitmap {
public:
    virtual ~IBitmap() = default;
    virtual bool GetWidth(int32_t& nWidth) = 0;
    virtual bool GetHeight(int32_t& nHeight) = 0;
    /// `rc` lies inside the bitmap.
    virtual bool LockBits(const CRect& rc, ELockMode mode, TLockedBits& bits) = 0;
    virtual bool UnlockBits() = 0;
};

/// A bitmap and what went wrong with it. Failures that do not stop the work are kept in `bOk`.
struct CBitmapSession {
    boost::shared_ptr<IBitmap> spBitmap;
    bool bOk = true;
};

/// Largest picture that is decoded, in pixels a side.
constexpr int32_t MAX_IMAGE_SIDE = 30000;

using TLoadedPicture = TOrFailure<boost::shared_ptr<IBitmap>>;

class IImageCodecs {
public:
    virtual ~IImageCodecs() = default;
    /// Makes the codecs ready; the token goes back to Shutdown. 0 on failure, which later calls show.
    virtual uintptr_t Startup() = 0;
    virtual void Shutdown(uintptr_t uToken) = 0;
    /// A transparent bitmap, null when there is no memory or the size is not positive.
    virtual boost::shared_ptr<IBitmap> CreateBitmap(CSize sz) = 0;
    /// Decodes a picture file, converted to 8 bits a channel with straight alpha; none when it cannot be
    /// read, is damaged, cut short, of no known kind, or larger than MAX_IMAGE_SIDE or 2 GiB decoded.
    virtual TLoadedPicture Load(const std::wstring& strPath) = 0;
    /// Decodes a picture that the program carries, as Load does.
    virtual TLoadedPicture LoadResource(std::string_view strBytes) = 0;
    /// Encodes by the path's ending (.png, .jpg, .jpeg, .bmp, .tif, .tiff, .gif in any case) and replaces the
    /// file atomically. PNG keeps alpha, but a picture that is opaque everywhere is written without; the
    /// others are flattened on white. Other endings fail, and any failure leaves the file as
    /// IFileStore::ReplaceBy does.
    virtual CFileOutcome Save(const std::wstring& strPath, IBitmap& bitmap) = 0;
    /// True when Save knows the path's ending.
    virtual bool CanSave(const std::wstring& strPath) = 0;
    /// Text as picture files name their parts, in code page 932 (Shift_JIS): '?' for each character that it
    /// lacks; what would pass `nLimit` bytes is cut off in front of a character.
    virtual std::string EncodeCodePage932(std::wstring_view strText, size_t nLimit) = 0;
};
