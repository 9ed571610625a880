// The controls by which a colour is chosen: a ring with a square, a hexadecimal text, sliders.
#pragma once

#include "core/PanelViews/ColorViews.h"
#include "core/Platform/Controls.h"

#include <optional>
#include <string_view>
#include <vector>

/// The numbers of the controls, in every window that has them.
enum EColorControl : int {
    COLOR_CIRCLE = 1,
    COLOR_BOXES,
    COLOR_SWAP,
    COLOR_HEX,
    COLOR_RECENT,
    COLOR_RED,
    COLOR_GREEN,
    COLOR_BLUE,
    COLOR_HUE,
    COLOR_SATURATION,
    COLOR_VALUE,
    COLOR_MODE,
};

/// The colour of six hexadecimal digits, with or without "#" in front; nullopt for another text.
std::optional<TColor> ReadHexColor(std::wstring_view strText);

/// The ring, the text and the sliders. They show one colour; what the user does with them makes another.
class CColorControls {
public:
    TPanelControl MakeCircle();
    static TPanelControl MakeText();
    static std::vector<TPanelControl> MakeSliders();

    /// Sets the values of those among the controls.
    void Show(std::vector<TPanelControl>& vControls, TColor color);
    /// The colour that a changed control stands for; nullopt for other controls and a wrong text.
    std::optional<TColor> OnControl(const TPanelControl& control);
    std::optional<TColor> OnPointer(int nId, EMessage id, CPoint pt);
    std::optional<TColor> OnKey(int nId, int nKey);

private:
    TColor SetHsv(const THsv& hsv);

    CColorCircleView m_circle;
    TColor m_color = 0;
};
