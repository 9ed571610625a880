// Copying of a canvas's pixels to the clipboard.
#pragma once

#include "core/Platform/System.h"
#include "core/Tools/PictureExchange.h"

#include <boost/noncopyable.hpp>

/// One for a session.
class CCanvasClipboard : public IPictureExchange, boost::noncopyable {
public:
    explicit CCanvasClipboard(IClipboard& clipboard) : m_clipboard(clipboard) {}

    bool CanCopy(const CCanvasBuffer& canvas) const override;
    /// The block is the selection's bounding rectangle; the alpha is that which a lift would take.
    bool Copy(CCanvasBuffer& canvas) override;
    bool CanPaste() const override { return m_clipboard.HasPicture(); }

private:
    IClipboard& m_clipboard;
};
