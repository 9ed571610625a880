#include "core/Panels/ColorControls.h"

#include "core/Base/Percent.h"

#include <algorithm>

namespace {

int ValueOf(int nId, TColor color, const THsv& hsv) {
    switch (nId) {
    case COLOR_RED:
        return RedOf(color);
    case COLOR_GREEN:
        return GreenOf(color);
    case COLOR_BLUE:
        return BlueOf(color);
    case COLOR_HUE:
        return hsv.nHue;
    case COLOR_SATURATION:
        return PercentOfByte(static_cast<uint8_t>(hsv.nSaturation));
    default:
        return PercentOfByte(static_cast<uint8_t>(hsv.nValue));
    }
}

std::wstring HexOf(TColor color) {
    constexpr wchar_t DIGITS[] = L"0123456789ABCDEF";
    std::wstring strHex = L"#";
    for (const uint8_t by : {RedOf(color), GreenOf(color), BlueOf(color)}) {
        strHex += DIGITS[by >> 4];
        strHex += DIGITS[by & 15];
    }
    return strHex;
}

} // namespace

std::optional<TColor> ReadHexColor(std::wstring_view strText) {
    if (strText.starts_with(L'#')) strText.remove_prefix(1);
    if (strText.size() != 6) return std::nullopt;
    uint32_t uValue = 0;
    for (const wchar_t ch : strText) {
        const size_t n = std::wstring_view(L"0123456789abcdef0123456789ABCDEF").find(ch);
        if (n == std::wstring_view::npos) return std::nullopt;
        uValue = uValue * 16 + static_cast<uint32_t>(n % 16);
    }
    return MakeColor(static_cast<uint8_t>(uValue >> 16), static_cast<uint8_t>(uValue >> 8),
                     static_cast<uint8_t>(uValue));
}

TPanelControl CColorControls::MakeCircle() {
    return {
        .kind = TPanelControl::EKind::View, .nId = COLOR_CIRCLE, .szView = {200, 184}, .pView = &m_circle};
}

TPanelControl CColorControls::MakeText() {
    return {.kind = TPanelControl::EKind::Text, .nId = COLOR_HEX, .strName = "hex"};
}

std::vector<TPanelControl> CColorControls::MakeSliders() {
    const auto slider = [](int nId, const wchar_t* pszLabel, int nMax, const wchar_t* pszUnit,
                           const char* pszName) {
        return TPanelControl{.kind = TPanelControl::EKind::Slider,
                             .nId = nId,
                             .strLabel = pszLabel,
                             .strUnit = pszUnit,
                             .nMax = nMax,
                             .strName = pszName};
    };
    return {slider(COLOR_RED, L"R", 255, L"", "red"),
            slider(COLOR_GREEN, L"G", 255, L"", "green"),
            slider(COLOR_BLUE, L"B", 255, L"", "blue"),
            slider(COLOR_HUE, L"H", 359, L"°", "hue"),
            slider(COLOR_SATURATION, L"S", 100, L"%", "saturation"),
            slider(COLOR_VALUE, L"V", 100, L"%", "value")};
}

void CColorControls::Show(std::vector<TPanelControl>& vControls, TColor color) {
    m_color = color;
    // Several hues and saturations give the same dark or grey colour: keep the chosen ones.
    if (ColorOfHsv(m_circle.m_hsv) != color) m_circle.m_hsv = HsvOfColor(color, m_circle.m_hsv);
    for (TPanelControl& control : vControls) {
        if (control.nId == COLOR_HEX) control.strText = HexOf(color);
        if (COLOR_RED <= control.nId && control.nId <= COLOR_VALUE)
            control.nValue = ValueOf(control.nId, color, m_circle.m_hsv);
    }
}

TColor CColorControls::SetHsv(const THsv& hsv) {
    m_circle.m_hsv = hsv;
    return m_color = ColorOfHsv(hsv);
}

std::optional<TColor> CColorControls::OnControl(const TPanelControl& control) {
    const auto by = static_cast<uint8_t>(std::clamp(control.nValue, 0, 255));
    const int nByte = ByteOfPercent(std::clamp(control.nValue, 0, 100));
    THsv hsv = m_circle.m_hsv;
    switch (control.nId) {
    case COLOR_HEX:
        return ReadHexColor(control.strText);
    case COLOR_RED:
        return MakeColor(by, GreenOf(m_color), BlueOf(m_color));
    case COLOR_GREEN:
        return MakeColor(RedOf(m_color), by, BlueOf(m_color));
    case COLOR_BLUE:
        return MakeColor(RedOf(m_color), GreenOf(m_color), by);
    case COLOR_HUE:
        hsv.nHue = std::clamp(control.nValue, 0, 359);
        return SetHsv(hsv);
    case COLOR_SATURATION:
        hsv.nSaturation = nByte;
        return SetHsv(hsv);
    case COLOR_VALUE:
        hsv.nValue = nByte;
        return SetHsv(hsv);
    default:
        return std::nullopt;
    }
}

std::optional<TColor> CColorControls::OnPointer(int nId, EMessage id, CPoint pt) {
    if (nId != COLOR_CIRCLE || !m_circle.OnPointer(id, pt)) return std::nullopt;
    return SetHsv(m_circle.m_hsv);
}

std::optional<TColor> CColorControls::OnKey(int nId, int nKey) {
    if (nId != COLOR_CIRCLE || !m_circle.OnKey(nKey)) return std::nullopt;
    return SetHsv(m_circle.m_hsv);
}
