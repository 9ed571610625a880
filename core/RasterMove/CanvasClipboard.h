// A canvas's pixels on their way to the clipboard and back.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/System.h"
#include "core/Tools/PictureExchange.h"

#include <boost/noncopyable.hpp>
#include <boost/weak_ptr.hpp>

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
    void CopyStrokes(const TStrokeForms& forms) override { m_clipboard.SetStrokes(forms); }
    bool HasStrokes() const override { return m_clipboard.HasStrokes(); }
    TStrokeBytes GetStrokes() const override { return m_clipboard.GetStrokes(); }

private:
    /// The last copy made here, valid while it is still on the clipboard, which owns the block.
    struct TCopied {
        boost::weak_ptr<const std::string> wpBlock;
        CPoint ptAt;
        CSize szCanvas;
        uint32_t uChange = 0;
    };

    /// The block while the clipboard's picture is one that was copied here, else null.
    TDibBytes FindOwn() const;
    TLoadedPicture TakePicture() const;
    CPoint FindPlace(const IActiveView& view, CSize szPicture) const;

    IClipboard& m_clipboard;
    TCopied m_copied;
};
