// Detects truncated picture files. The decoders return an incomplete picture for such a file, so the file's
// own structure is followed to its end here.
#pragma once

#include <string_view>

enum class EPictureKind { Unknown, Png, Jpeg, Bmp, Gif, Tiff };

/// The file format, recognised by the first bytes.
EPictureKind KindOfPicture(std::string_view strFile);

/// True when all parts announced by the file's structure lie inside the file, except those that the
/// decoders check themselves. Does not check the parts' content. False for an unknown format.
bool IsWholePicture(std::string_view strFile, EPictureKind kind);
