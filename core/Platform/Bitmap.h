// Pictures outside the tiled planes: 32-bit B, G, R, A bitmaps with rectangle locking, and the codecs that
// read and write them.
#pragma once

#include "core/Base/FileFailure.h"
#include "core/Base/Geometry.h"
#include "core/Platform/Progress.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

enum class ELockMode { Read, Write };

/// A locked rectangle: row y starts at pData + y * nStride (negative: bottom up), pixels B, G, R, straight A.
struct TLockedBits {
    uint8_t* pData = nullptr;
    int nStride = 0;
};

/// A 32-bit bitmap. Only one rectangle can be locked at a time. Operations return false on failure and do
/// not throw.
class IBitmap {
public:
    virtual ~IBitmap() = default;
    virtual bool GetWidth(int32_t& nWidth) = 0;
    virtual bool GetHeight(int32_t& nHeight) = 0;
    /// `rc` must lie inside the bitmap.
    virtual bool LockBits(const CRect& rc, ELockMode mode, TLockedBits& bits) = 0;
    virtual bool UnlockBits() = 0;
};

/// A bitmap and its status; failures that do not stop the work are recorded in `bOk`.
struct CBitmapSession {
    boost::shared_ptr<IBitmap> spBitmap;
    bool bOk = true;
};

/// Largest side of a picture that is decoded, in pixels.
constexpr int32_t MAX_IMAGE_SIDE = 30000;

/// How pictures are encoded where their format leaves a choice.
struct TPictureEncoding {
    int nJpegQuality = 95; ///< 1 to 100
};

using TEncodedPicture = TOrFailure<std::optional<std::string>>;
using TLoadedPicture = TOrFailure<boost::shared_ptr<IBitmap>>;

class IImageCodecs {
public:
    virtual ~IImageCodecs() = default;
    /// Starts the codecs; pass the token to Shutdown. Returns 0 on failure, after which later calls fail.
    virtual uintptr_t Startup() = 0;
    virtual void Shutdown(uintptr_t uToken) = 0;
    /// A transparent bitmap, null when there is no memory or the size is not positive.
    virtual boost::shared_ptr<IBitmap> CreateBitmap(CSize sz) = 0;
    /// Decodes a picture file to 8 bits a channel with straight alpha. Fails when the file is unreadable,
    /// damaged, truncated, of unknown format, or larger than MAX_IMAGE_SIDE or 2 GiB decoded. Raises nothing
    /// but cancelled_error.
    virtual TLoadedPicture Load(const std::wstring& strPath, IProgress& progress = NoProgress()) = 0;
    /// Decodes an embedded picture, as Load does.
    virtual TLoadedPicture LoadResource(std::string_view strBytes) = 0;
    /// Encodes by the path's extension (.png, .jpg, .jpeg, .bmp, .tif, .tiff, .gif in any case) and
    /// replaces the file atomically. PNG keeps alpha, unless the picture is fully opaque; the others are
    /// flattened on white. Other extensions fail. After a failure the file is in the state that
    /// IFileStore::ReplaceBy states. Raises nothing but cancelled_error, after which it is unchanged.
    virtual CFileOutcome Save(const std::wstring& strPath, IBitmap& bitmap,
                              const TPictureEncoding& encoding = {}, IProgress& progress = NoProgress()) = 0;
    /// The bytes of the PNG file that Save would write. Raises nothing but cancelled_error.
    virtual TEncodedPicture EncodePng(IBitmap& bitmap, IProgress& progress = NoProgress()) = 0;
    /// Bytes of the JPEG file that Save would write; 0 without memory.
    virtual uint64_t CountJpegBytes(IBitmap& bitmap, int nQuality) = 0;
    /// True when Save supports the path's extension.
    virtual bool CanSave(const std::wstring& strPath) = 0;
    /// Encodes text to code page 932 (Shift_JIS) for names in picture files: '?' for each missing
    /// character, truncated to `nLimit` bytes at a character boundary.
    virtual std::string EncodeCodePage932(std::wstring_view strText, size_t nLimit) = 0;
};
