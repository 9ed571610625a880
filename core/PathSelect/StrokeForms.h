// Strokes on their way to the clipboard and back; docs/project-file.md describes their bytes.
#pragma once

#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/Platform/System.h"

/// Paths out of a document.
struct TCopiedStrokes {
    CSize szCanvas;
    TColor color = 0; ///< as the canvas shows it
    CVectorLayerBuffer::TPaths vPaths;
};

/// The own form of the paths.
TStrokeBytes WriteStrokes(const TCopiedStrokes& strokes);

/// Paths of that form, on no layer. Raises deserialize_error for bytes that are none, and without a path.
TCopiedStrokes ReadStrokes(const TStrokeBytes& spStrokes);

/// All forms of the paths: their own, SVG, and what of them lies on the canvas as a picture. Raises
/// bad_alloc.
TStrokeForms MakeStrokeForms(const TCopiedStrokes& strokes);

/// The box around the paths' shapes in path units.
CRect BoundsOfPaths(const CVectorLayerBuffer::TPaths& vPaths);
