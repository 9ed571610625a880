// The brush panel: presets, sizes, edge and opacity of the active freehand tool.
#pragma once

#include "core/PanelViews/BrushView.h"
#include "core/Panels/BrushList.h"
#include "core/Panels/Panel.h"
#include "core/Panels/PresetRows.h"

class CBrushWnd : public CPanel {
public:
    CBrushWnd(const wchar_t* pszSection, const TPanelOutside& outside);
    std::wstring GetTitle() const override { return L"ブラシ"; }
    bool IsUsed() const override { return GetBrush() || !GetTool(); }

protected:
    void OnOpen() override;
    void OnKeep() override;
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;
    void OnRenameRow(int nId, int nRow, const std::wstring& strName) override;
    void OnDrop(int nId, int nFrom, int nTo, EDropAt at) override;
    bool OnIdle() override;

private:
    /// The active tool if it has a brush, else null.
    boost::shared_ptr<CRasterBrushBase> GetBrush() const;
    /// Does what a button or row of the presets says; false for other controls.
    bool OnPresetControl(const TPanelControl& control, CRasterBrushBase& tool);

    CPresetRows m_presets;
    CBrushList m_list;
    CBrushView m_view;
};
