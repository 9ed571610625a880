// The base of dialogs that change a layer's pixels: it has the preview, its zoom, and shows the picture
// before.
#pragma once

#include "core/ImageDialogs/LevelPreview.h"
#include "core/Platform/Dialogs.h"

class CPreviewDialog : public CDialogModel {
public:
    bool OnOk(IWindow*) override { return true; }

protected:
    /// Adds the preview's controls with these ids; those of a second column follow.
    CPreviewDialog(const TPreviewSource& source, int nIdPreview, int nIdZoom);

    CLevelPreview& GetPreview() { return m_wndPreview; }
    bool IsColor() const { return m_bColor; }

    void OnControl(TPanelControl& control) final;
    void OnPointer(int nView, EMessage id, CPoint pt) override;
    /// A control of the dialog itself was changed.
    virtual void OnValue(TPanelControl& control) = 0;

private:
    int m_nIdPreview;
    int m_nIdZoom;
    bool m_bColor;
    CLevelPreview m_wndPreview;
};
