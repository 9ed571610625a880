// The brush panel: size list, size, edge, opacity and drawing options.
#pragma once

#include "core/PanelViews/BrushView.h"
#include "core/Panels/BrushList.h"
#include "core/Panels/Panel.h"

class CBrushWnd : public CPanel {
public:
    CBrushWnd(const wchar_t* pszSection, const TPanelOutside& outside);
    std::wstring GetTitle() const override { return L"ブラシ"; }

protected:
    void OnOpen() override;
    void OnKeep() override;
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;

private:
    /// The active tool if it has a brush, else null.
    boost::shared_ptr<CRasterBrushBase> GetBrush() const;

    CBrushList m_list;
    CBrushView m_view;
};
