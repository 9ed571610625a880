// What the dialogs of operations on a layer's pixels share: the preview with its zoom, and the picture
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
