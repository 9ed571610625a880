// Layered PSD files, written only. What is written and why: docs/psd.md.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

class IFileStore;
class IImageCodecs;

/// True when the name has the ending .psd, in any case.
bool IsPsdFile(const std::wstring& strPath);

/// Writes the document with its layers, put together in memory and written beside, then renamed over. Raises
/// fileopen_error when the file cannot be written, refused_error when the format cannot hold the document (a
/// side over 30,000 pixels, over 32,767 records, over 4 GiB), with the old file whole.
void ExportPsd(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs);
