// The clipboard as tools see it.
#pragma once

#include "core/Platform/System.h"

#include <boost/shared_ptr.hpp>

class CCanvasBuffer;
class IActiveView;

/// Exchanges pictures and vector strokes between canvases and the clipboard. Complete brush strokes are
/// merged first.
class IPictureExchange {
public:
    virtual ~IPictureExchange() = default;
    /// Copies what floats above the active raster layer, or else what is selected of it. False when there is
    /// nothing; then the clipboard keeps its content. Raises std::runtime_error when the clipboard cannot be
    /// opened.
    virtual bool Copy(const boost::shared_ptr<CCanvasBuffer>& spCanvas) = 0;
    /// True while the clipboard holds a picture.
    virtual bool CanPaste() const = 0;
    /// Lets the clipboard's picture float above the view's active raster layer, or a new one above another
    /// layer, one undo step. Raises refused_error, which says why, when the picture cannot be read.
    virtual bool Paste(const IActiveView& view) = 0;
    /// Copies vector strokes. Raises std::runtime_error when the clipboard cannot be opened.
    virtual void CopyStrokes(const TStrokeForms& forms) = 0;
    /// True while the clipboard holds vector strokes.
    virtual bool HasStrokes() const = 0;
    /// The clipboard's vector strokes, unread; null without any.
    virtual TStrokeBytes GetStrokes() const = 0;
};
