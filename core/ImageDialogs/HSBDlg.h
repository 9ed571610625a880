// The dialog of hue, saturation and brightness.
#pragma once

#include "core/ImageDialogs/PreviewDialog.h"

class CHSBDlg : public CPreviewDialog {
public:
    explicit CHSBDlg(const TPreviewSource& source);

    const char* GetName() const override { return "CHSBDlg"; }
    std::wstring GetTitle() const override { return L"色相・彩度・明度"; }

    /// The values of the sliders.
    const THsbValues& GetValues() const { return m_values; }

protected:
    void OnValue(TPanelControl& control) override;

private:
    /// Takes the sliders' positions over; shows their values in the edits and the preview.
    void ShowValues();

    THsbValues m_values;
};
