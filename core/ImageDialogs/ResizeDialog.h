// The dialog that adds margins to the canvas or cuts them off.
#pragma once

#include "core/ImageDialogs/FrameView.h"
#include "core/Platform/Dialogs.h"

class CResizeDialog : public CDialogModel {
public:
    /// `spPicture` shows the canvas, of size `szCanvas`; both serve the view.
    CResizeDialog(IMessageBoxes& boxes, const boost::shared_ptr<const TPicture>& spPicture, CSize szCanvas);

    const char* GetName() const override { return "CResizeDialog"; }
    std::wstring GetTitle() const override { return L"サイズ変更"; }
    /// Refuses texts that are no whole numbers, then sizes below 1, then sizes above MAX_CANVAS_SIDE.
    bool OnOk(IWindow* pOwner) override;

    /// The accepted frame in pixels of the present canvas.
    const CRect& GetFrame() const { return m_rcFrame; }

protected:
    void OnControl(TPanelControl& control) override;

private:
    /// The frame that the edits describe, perhaps empty or turned inside out; nullopt when one holds no
    /// number.
    std::optional<CRect> ReadFrame();
    void ShowFrame();

    IMessageBoxes& m_boxes;
    CSize m_szCanvas;
    CFrameView m_view;
    CRect m_rcFrame;
};
