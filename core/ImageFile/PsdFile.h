// Export of layered PSD files; see docs/psd.md for the content and its reasons.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

class IFileStore;
class IImageCodecs;

/// True when the name has the extension .psd, in any case.
bool IsPsdFile(const std::wstring& strPath);

/// Writes the document with its layers, assembled in memory, to a temporary file that is renamed over the
/// old one. Raises fileopen_error when the file cannot be written, refused_error when the document exceeds
/// the format (a side over 30,000 pixels, over 32,767 records, over 4 GiB), or
/// cancelled_error; the old file stays unchanged.
void ExportPsd(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs,
               IProgress& progress = NoProgress());
