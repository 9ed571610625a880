// The pressure panel: the curve from pressure to width and opacity, its limits, and memos of them.
#pragma once

#include "core/PanelViews/PressCurveView.h"
#include "core/Panels/Panel.h"
#include "core/Panels/PressMemo.h"

class CRasterBrushBase;

class CPressWnd : public CPanel {
public:
    CPressWnd(const wchar_t* pszSection, const TPanelOutside& outside);
    std::wstring GetTitle() const override { return L"筆圧"; }
    bool IsUsed() const override { return GetBrush() || !GetTool(); }

protected:
    void OnOpen() override;
    void OnKeep() override;
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;
    void OnActivateRow(int nId, int nRow) override;
    void OnRenameRow(int nId, int nRow, const std::wstring& strName) override;
    void OnMoveRow(int nId, int nFrom, int nTo) override;
    void OnPointer(int nId, EMessage id, CPoint pt) override;
    void OnKey(int nId, int nKey) override;

private:
    /// The active tool if it has a brush, else null.
    boost::shared_ptr<CRasterBrushBase> GetBrush() const;
    void TakeHandles();

    CPressCurveView m_curve;
    CPressMemoView m_memo;
    int m_idxSel = -1; ///< the selected memo
};
