// A new document and its first layer.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/shared_ptr.hpp>

#include <optional>

class CCanvasBuffer;

/// The kind of a new document.
struct TNewDocument {
    CSize sz;            ///< in pixels, both sides positive
    bool bColor = true;  ///< false for a grey canvas
    bool bLight = false; ///< a canvas in colour is shown in grey, which takes less memory
};

class CIniConfig;

/// The document that a command of the given sizes makes (ID_NEW_A4_350 and the like); for ID_NEW_LAST the
/// last one that was made. Nullopt for other commands and when there is none.
std::optional<TNewDocument> FindNewDocument(int nCommand, CIniConfig& config);
/// Stores the kind of a document for ID_NEW_LAST.
void KeepNewDocument(const TNewDocument& document, CIniConfig& config);

/// Creates a document with one raster layer, which is not undoable. Raises what the memory does.
boost::shared_ptr<CCanvasBuffer> MakeDocument(const TNewDocument& document);
