// Pictures between files and a host's memory.
#pragma once

#include "host/PictureHost/PictureHost.h"

#include <filesystem>

class IImageCodecs;

/// Reads a picture; one that is opaque everywhere has no transparency. Raises std::runtime_error that names
/// the file.
THostPicture LoadPicture(const std::filesystem::path& path, IImageCodecs& codecs);

/// Reads a picture's grey levels as a further channel of a picture of size `sz`. Raises std::runtime_error
/// that names the file.
THostPicture::TPlane LoadAlpha(const std::filesystem::path& path, CSize sz, IImageCodecs& codecs);

/// Raises std::runtime_error that names the file when a picture could not be written there: asked before the
/// user works on what would then be lost.
void CheckSave(const std::filesystem::path& path, IImageCodecs& codecs);

/// Write a picture, or a channel of size `sz` as a grey picture. Raise std::runtime_error that names the
/// file, and leave an old file as it was.
void SavePicture(const std::filesystem::path& path, const THostPicture& picture, IImageCodecs& codecs);
void SaveAlpha(const std::filesystem::path& path, const THostPicture::TPlane& vAlpha, CSize sz,
               IImageCodecs& codecs);
