// Is a picture file all there? The decoders give a picture with a missing part for a file that was cut short;
// here the file's own structure is followed to its end instead.
#pragma once

#include <string_view>

enum class EPictureKind { Unknown, Png, Jpeg, Bmp, Gif, Tiff };

/// The kind by the file's first bytes.
EPictureKind KindOfPicture(std::string_view strFile);

/// True when the parts that the file's structure announces lie inside the file, but for those that the
/// decoders look after themselves. Says nothing of what the parts hold. False for an unknown kind.
bool IsWholePicture(std::string_view strFile, EPictureKind kind);
