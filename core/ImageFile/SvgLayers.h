// A document as the text of an SVG file: a group for each layer, its children inside.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"

#include <string>

class IImageCodecs;

/// The text. The canvas's flags must have been collected. Raises fileopen_error with the file's name when a
/// layer's pixels cannot be encoded, bad_alloc and cancelled_error.
std::string WriteSvg(CCanvasBuffer& canvas, const std::wstring& strPath, IImageCodecs& codecs,
                     IProgress& progress);

/// Paths of one colour as the text of a file that shows their pixels alone, at their place on a canvas of
/// that size. Raises bad_alloc.
std::string WritePathsSvg(const CVectorLayerBuffer::TPaths& vPaths, TColor color, CSize szCanvas);

/// The layer's colour as its canvas shows it, grey in a grey picture.
TColor GetShownColor(const CVectorLayerBuffer& layer);
