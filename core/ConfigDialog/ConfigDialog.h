// The settings that the user finds under 環境設定, in pages.
#pragma once

#include "core/ConfigDialog/ConfigPage.h"

#include <memory>

class CConfigDialog : public CDialogModel {
public:
    /// `outside` outlives the dialog.
    explicit CConfigDialog(const TConfigOutside& outside);

    const char* GetName() const override { return "CConfigDialog"; }
    std::wstring GetTitle() const override { return L"環境設定"; }
    void OnPen(int nView, const TPenReport& report) override;
    /// Applies all pages when every one of them can be.
    bool OnOk(IWindow* pOwner) override;

protected:
    void OnControl(TPanelControl& control) override;
    void OnFold(int nId, int nRow, bool bClosed) override;
    void OnPointer(int nId, EMessage id, CPoint pt) override;

private:
    CConfigPage& PageOf(int nId) const;

    std::vector<std::unique_ptr<CConfigPage>> m_vPages;
};
