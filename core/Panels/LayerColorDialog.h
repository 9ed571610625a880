// The dialog that chooses a vector layer's colour.
#pragma once

#include "core/Panels/ColorControls.h"
#include "core/Platform/Dialogs.h"

#include <boost/function.hpp>

class CLayerColorDialog : public CDialogModel {
public:
    /// `fnShow` is called with every colour that the user tries.
    CLayerColorDialog(TColor color, boost::function<void(TColor)> fnShow);

    const char* GetName() const override { return "CLayerColorDialog"; }
    std::wstring GetTitle() const override { return L"レイヤーカラー"; }
    bool OnOk(IWindow*) override { return true; }
    TColor GetColor() const { return m_clrLayer; }

protected:
    void OnControl(TPanelControl& control) override { Take(m_color.OnControl(control)); }
    void OnPointer(int nId, EMessage id, CPoint pt) override { Take(m_color.OnPointer(nId, id, pt)); }
    void OnKey(int nId, int nKey) override { Take(m_color.OnKey(nId, nKey)); }

private:
    void Take(std::optional<TColor> color);

    CColorControls m_color;
    TColor m_clrLayer;
    boost::function<void(TColor)> m_fnShow;
};
