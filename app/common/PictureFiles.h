// Conversion of pictures between files and a host's memory.
#pragma once

#include "host/PictureHost/PictureHost.h"

#include <filesystem>

class IImageCodecs;

/// Reads a picture; a fully opaque one gets no transparency channel. Raises std::runtime_error that names
/// the file.
THostPicture LoadPicture(const std::filesystem::path& path, IImageCodecs& codecs);

/// Reads a picture's grey levels as a further channel for a picture of size `sz`. Raises std::runtime_error
/// that names the file.
THostPicture::TPlane LoadAlpha(const std::filesystem::path& path, CSize sz, IImageCodecs& codecs);

/// Raises std::runtime_error that names the file when it could not be written there, or when `bKnown` says
/// that there is no format of its ending. Called before the user does work that would then be lost.
void CheckSave(const std::filesystem::path& path, bool bKnown);

/// Write a picture, or a channel of size `sz` as a grey picture. Raise std::runtime_error that names the
/// file, and keep an old file unchanged.
void SavePicture(const std::filesystem::path& path, const THostPicture& picture, IImageCodecs& codecs);
void SaveAlpha(const std::filesystem::path& path, const THostPicture::TPlane& vAlpha, CSize sz,
               IImageCodecs& codecs);
