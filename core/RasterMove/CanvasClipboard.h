// A canvas's pixels on their way to the clipboard and back.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/System.h"
#include "core/Tools/PictureExchange.h"

#include <boost/noncopyable.hpp>

/// One for a session.
class CCanvasClipboard : public IPictureExchange, boost::noncopyable {
public:
    explicit CCanvasClipboard(IClipboard& clipboard) : m_clipboard(clipboard) {}

    /// The block is the selection's bounding rectangle; the alpha is that which a lift would take.
    bool Copy(const boost::shared_ptr<CCanvasBuffer>& spCanvas) override;
    bool CanPaste() const override { return m_clipboard.HasPicture(); }
    /// At the place that it was copied from, where the canvas has the same size and the view shows that place
    /// whole; else centred in the view, and inside the canvas where it fits.
    bool Paste(const IActiveView& view) override;

private:
    /// What was copied here last, valid while the clipboard has not changed since.
    struct TCopied {
        TDibBytes spBlock;
        CPoint ptAt;
        CSize szCanvas;
        uint32_t uChange = 0;
    };

    bool IsOwn() const { return m_copied.spBlock && m_copied.uChange == m_clipboard.GetChangeCount(); }
    TLoadedPicture TakePicture() const;
    CPoint FindPlace(const IActiveView& view, CSize szPicture) const;

    IClipboard& m_clipboard;
    TCopied m_copied;
};
