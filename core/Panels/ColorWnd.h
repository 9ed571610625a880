// The panel for the drawing colours.
#pragma once

#include "core/Panels/ColorControls.h"
#include "core/Panels/Panel.h"

class CRasterBrushBase;

class CColorWnd : public CPanel {
public:
    CColorWnd(const wchar_t* pszSection, const TPanelOutside& outside);
    std::wstring GetTitle() const override { return L"カラーピッカー"; }
    /// Adds the stroke's colour to the recent colours.
    void OnStroke() override;

protected:
    void OnOpen() override;
    void OnKeep() override;
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;
    void OnPointer(int nId, EMessage id, CPoint pt) override;
    void OnKey(int nId, int nKey) override;

private:
    /// The active tool if it draws in a colour, else null.
    boost::shared_ptr<CRasterBrushBase> GetBrush() const;
    void SetColor(TColor color);
    void Swap();
    /// Sliders instead of the circle.
    void ShowSliders(bool bSliders);

    CColorControls m_color;
    CTwoColorBoxView m_boxes;
    CColorListView m_recent;
    std::vector<TColor> m_vRead;
};
