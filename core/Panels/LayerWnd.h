// The layer panel: the tree of the active document's layers and what can be done with them.
#pragma once

#include "core/PanelViews/ColorViews.h"
#include "core/Panels/LayerRows.h"
#include "core/Panels/LayerSolo.h"
#include "core/Panels/LayerThumbnails.h"
#include "core/Panels/Panel.h"

class CLayerWnd : public CPanel {
public:
    CLayerWnd(const wchar_t* pszSection, const TPanelOutside& outside);
    std::wstring GetTitle() const override { return L"レイヤー"; }
    /// Brings thumbnails up to date.
    bool OnIdle() override;
    /// Shows the active layer alone, or what was shown before that.
    void ShowActiveAlone() {
        ShowAlone(GetActiveLayer());
        Refresh();
    }

protected:
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;
    void OnRenameRow(int nId, int nRow, const std::wstring& strName) override;
    void OnEye(int nId, int nRow, EEyeAct act) override;
    void OnFold(int nId, int nRow, bool bClosed) override;
    void OnDrop(int nId, int nFrom, int nTo, EDropAt at) override;
    void OnMenu(int nId, int nRow) override;
    void OnPointer(int nId, EMessage id, CPoint pt) override;
    void OnKey(int nId, int nKey) override;

private:
    TLayerPtr GetActiveLayer() const;
    void SelectRow(int nRow);
    void ShowAlone(const TLayerPtr& spLayer);
    void ChooseColor();
    std::vector<TTreeRow> MakeTree() const;

    CLayerRows m_rows;
    CLayerThumbnails m_thumbnails;
    CLayerSolo m_solo;
    CSwatchView m_swatch;
};
