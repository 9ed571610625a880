// Small pictures of project files of any size.
#pragma once

#include "core/Platform/Files.h"
#include "core/Platform/Progress.h"
#include "core/Platform/Tree.h"

/// Largest side of such a picture.
constexpr int32_t MAX_THUMBNAIL_SIDE = 1024;

/// Reads a project file's picture on white paper, as the window shows it, reduced to at most `nSide` pixels
/// on each side, 1 to MAX_THUMBNAIL_SIDE, and never enlarged: each pixel is the mean of those that it covers.
/// The file's tiles are read when their blocks are composed, and only those of layers that show, so that the
/// memory depends on the number of layers and the paths, not on the file's size. Several threads
/// use the reader at once. Raises what ReadProject raises, also for files that need too much memory.
boost::shared_ptr<const TPicture> ReadThumbnail(TOpenedFile upReader, const std::wstring& strName,
                                                int32_t nSide, IProgress& progress = NoProgress());
