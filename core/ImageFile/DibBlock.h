// Pictures as blocks of memory, the form in which programs exchange them on the clipboard: a bitmap header
// with the rows of pixels behind it.
#pragma once

#include "core/Platform/Bitmap.h"
#include "core/Platform/System.h"

/// A block while its pixels are being painted.
struct TDibBlock {
    TDibBytes spBytes;
    boost::shared_ptr<IBitmap> spPixels; ///< locks the block's own bytes
};

/// A transparent picture: a BITMAPV5HEADER of 124 bytes, 32 bits a pixel in bit fields, sRGB, rows bottom up,
/// straight alpha. The sides must lie within 1 and MAX_DOCUMENT_SIDE. Raises std::bad_alloc.
TDibBlock CreateDibBlock(CSize sz);

/// A block with the bitmap's pixels; null when the bitmap cannot be locked or is larger than a block can be.
/// Raises std::bad_alloc.
TDibBytes MakeDibBlock(IBitmap& bitmap);

/// The alpha of a 32-bit picture in which it is 0 everywhere. Many programs leave it 0 and mean an opaque
/// picture.
enum class EZeroAlpha { Opaque, Transparent };

/// The picture of a block: headers of 40, 52, 56, 108 or 124 bytes, 24 or 32 bits, bit fields or none, rows
/// in both orders. Pixels that have this application's form are not copied; such a picture cannot be locked
/// for writing. Fails with UnknownPicture for palettes, 16 bits and compressions, DamagedPicture for bytes
/// that contradict one another or are too few, PictureTooLarge beyond MAX_DOCUMENT_SIDE or 2 GiB of pixels,
/// NoMemory. Raises nothing.
TLoadedPicture ReadDibBlock(const TDibBytes& spBlock, EZeroAlpha zero = EZeroAlpha::Opaque);

/// The same for a .bmp file in memory: a block behind a file header.
TLoadedPicture ReadBmpFile(const TDibBytes& spFile);

/// The file header of 14 bytes that makes a file of a block of this application.
std::string MakeBmpFileHeader(const std::string& strBlock);
