// The dialog of the level correction.
#pragma once

#include "core/ImageDialogs/LevelViews.h"
#include "core/ImageDialogs/PreviewDialog.h"

class CLevelDlg : public CPreviewDialog {
public:
    explicit CLevelDlg(const TPreviewSource& source);

    const char* GetName() const override { return "CLevelDlg"; }
    std::wstring GetTitle() const override { return L"レベル補正"; }
    bool OnOk(IWindow* pOwner) override;

    /// Of the accepted values: the table, and the channels as bits (0 alpha, 1 blue or grey, 2 green, 3 red).
    const TLevelTable& GetLut() const { return m_byLut; }
    uint32_t GetChannels() const { return m_uChannels; }

protected:
    void OnValue(TPanelControl& control) override;
    void OnPointer(int nView, EMessage id, CPoint pt) override;
    void OnKey(int nView, int nKey) override;

private:
    uint32_t GetChosenChannels();
    /// Counts the picture's levels anew.
    void UpdateHistogram();
    /// Brings the edits and the preview up to date.
    void ShowLevels();
    void ReadEdit(const TPanelControl& control);

    TPreviewSource m_source;
    TLevels m_levels;
    TLevelTable m_byLut{};
    uint32_t m_uChannels = 0;
    CLevelHistogram m_wndHistogram;
    CLevelSlider m_wndSlider{m_levels};
};
