// The panel that selects the tool.
#pragma once

#include "core/Panels/Panel.h"

class CToolWnd : public CPanel {
public:
    CToolWnd(const wchar_t* pszSection, const TPanelOutside& outside);
    std::wstring GetTitle() const override { return L"ツール"; }

protected:
    void OnRefresh() override;
};
