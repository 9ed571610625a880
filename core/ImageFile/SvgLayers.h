// A document as the text of an SVG file: a group for each layer, its children inside.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <string>

class IImageCodecs;

/// The text. The canvas's flags must have been collected. Raises fileopen_error with the file's name when a
/// layer's pixels cannot be encoded, bad_alloc and cancelled_error.
std::string WriteSvg(CCanvasBuffer& canvas, const std::wstring& strPath, IImageCodecs& codecs,
                     IProgress& progress);
