// The panel that selects the tool.
#pragma once

#include "core/Panels/Panel.h"

class CToolWnd : public CPanel {
public:
    explicit CToolWnd(const wchar_t* pszSection);
    std::wstring GetTitle() const override { return L"ツール"; }

protected:
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;
};
