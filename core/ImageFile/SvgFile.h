// Export of SVG files with the layers as groups; see docs/svg.md for the content and its reasons.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

class IFileStore;
class IImageCodecs;

/// True when the name has the extension .svg, in any case.
bool IsSvgFile(const std::wstring& strPath);

/// Writes the document with its layers, assembled in memory, to a temporary file that is renamed over the
/// old one. Paths stay curves, raster layers are embedded as PNG. Raises fileopen_error when the file cannot
/// be written or a raster layer is larger than a PNG may be, bad_alloc, or cancelled_error; the old file
/// stays unchanged.
void ExportSvg(CCanvasBuffer& canvas, const std::wstring& strPath, IFileStore& files, IImageCodecs& codecs,
               IProgress& progress = NoProgress());
