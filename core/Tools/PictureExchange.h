// The clipboard as tools see it.
#pragma once

class CCanvasBuffer;
class IActiveView;

/// Exchanges pictures between canvases and the clipboard. Pending work of the canvas must have been
/// completed.
class IPictureExchange {
public:
    virtual ~IPictureExchange() = default;
    /// True when a raster layer is active and a part of the canvas is selected.
    virtual bool CanCopy(const CCanvasBuffer& canvas) const = 0;
    /// Copies the selected pixels of the active layer. Returns false without any; then the clipboard's
    /// content stays. Raises std::runtime_error when the clipboard cannot be opened.
    virtual bool Copy(CCanvasBuffer& canvas) = 0;
    /// True while the clipboard holds a picture.
    virtual bool CanPaste() const = 0;
};
