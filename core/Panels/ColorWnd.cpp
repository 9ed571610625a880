#include "core/Panels/ColorWnd.h"

#include "core/IniConfig/IniConfig.h"
#include "core/Platform/System.h"
#include "core/RasterBrush/FreehandTools.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <utility>

namespace {

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
};

constexpr wchar_t SECTION[] = L"ColorList";

// 0 to 255 as percent, and back.
int PercentOf(int n) { return (n * 100 + 127) / 255; }
int ByteOf(int nPercent) { return (nPercent * 255 + 50) / 100; }

} // namespace

boost::shared_ptr<CRasterBrushBase> CColorWnd::GetBrush() const {
    const auto spTool = boost::dynamic_pointer_cast<CRasterBrushBase>(GetTool());
    return spTool && spTool->GetToolId() != TOOL_ERASER ? spTool : boost::shared_ptr<CRasterBrushBase>();
}

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

CColorWnd::CColorWnd(const wchar_t* pszSection, const TPanelOutside& outside) : CPanel(pszSection, outside) {
    using EKind = TPanelControl::EKind;
    const auto slider = [](int nId, const wchar_t* pszLabel, int nMax, const wchar_t* pszUnit) {
        return TPanelControl{
            .kind = EKind::Slider, .nId = nId, .strLabel = pszLabel, .strUnit = pszUnit, .nMax = nMax};
    };
    m_vControls = {
        {.kind = EKind::View, .nId = COLOR_CIRCLE, .szView = {200, 140}, .pView = &m_circle},
        {.kind = EKind::View, .nId = COLOR_BOXES, .szView = {36, 36}, .pView = &m_boxes},
        {.kind = EKind::Button, .nId = COLOR_SWAP, .strText = L"入れ替え", .bSameLine = true},
        {.kind = EKind::Text, .nId = COLOR_HEX, .bSameLine = true},
        {.kind = EKind::View, .nId = COLOR_RECENT, .szView = {200, 18}, .pView = &m_recent},
        slider(COLOR_RED, L"R", 255, L""),
        slider(COLOR_GREEN, L"G", 255, L""),
        slider(COLOR_BLUE, L"B", 255, L""),
        slider(COLOR_HUE, L"H", 359, L"°"),
        slider(COLOR_SATURATION, L"S", 100, L"%"),
        slider(COLOR_VALUE, L"V", 100, L"%"),
    };
}

void CColorWnd::OnOpen() {
    const auto spSection = GetOutside().settings.GetSection(SECTION);
    const int nCount = std::clamp(spSection->GetInt(L"ColorCount", 0), 0, CColorListView::COLUMNS);
    for (int n = 1; n <= nCount; ++n)
        m_recent.m_vColors.push_back(static_cast<TColor>(spSection->GetInt(std::to_wstring(n), 0)) &
                                     0xFFFFFF);
    m_vRead = m_recent.m_vColors;
}

void CColorWnd::OnKeep() {
    if (m_recent.m_vColors == m_vRead) return;
    std::vector<std::pair<std::wstring, int32_t>> vValues{
        {L"ColorCount", static_cast<int32_t>(m_recent.m_vColors.size())}};
    for (const TColor color : m_recent.m_vColors)
        vValues.emplace_back(std::to_wstring(vValues.size()), static_cast<int32_t>(color));
    GetOutside().settings.GetSection(SECTION)->SetInts(vValues);
    m_vRead = m_recent.m_vColors;
}

void CColorWnd::OnStroke() {
    const auto spTool = GetBrush();
    if (!spTool) return;
    const TColor color = spTool->GetFreehand().m_clrBrush;
    std::vector<TColor>& v = m_recent.m_vColors;
    if (!v.empty() && v.front() == color) return;
    std::erase(v, color);
    v.insert(v.begin(), color);
    if (v.size() > static_cast<size_t>(CColorListView::COLUMNS)) v.pop_back();
    Refresh();
}

void CColorWnd::OnRefresh() {
    const auto spTool = GetBrush();
    EnableAll(spTool != nullptr);
    if (!spTool) return;
    const TColor color = spTool->GetFreehand().m_clrBrush;
    m_boxes.m_clrBrush = color;
    m_boxes.m_clrBack = spTool->GetFreehand().m_clrBack;
    // Several hues and saturations give the same dark or grey colour: keep the chosen ones.
    if (ColorOfHsv(m_circle.m_hsv) != color) m_circle.m_hsv = HsvOfColor(color, m_circle.m_hsv);
    Find(COLOR_RED).nValue = RedOf(color);
    Find(COLOR_GREEN).nValue = GreenOf(color);
    Find(COLOR_BLUE).nValue = BlueOf(color);
    Find(COLOR_HUE).nValue = m_circle.m_hsv.nHue;
    Find(COLOR_SATURATION).nValue = PercentOf(m_circle.m_hsv.nSaturation);
    Find(COLOR_VALUE).nValue = PercentOf(m_circle.m_hsv.nValue);
    constexpr wchar_t DIGITS[] = L"0123456789ABCDEF";
    std::wstring& strHex = Find(COLOR_HEX).strText;
    strHex = L"#";
    for (const uint8_t by : {RedOf(color), GreenOf(color), BlueOf(color)}) {
        strHex += DIGITS[by >> 4];
        strHex += DIGITS[by & 15];
    }
}

void CColorWnd::SetColor(TColor color) {
    const auto spTool = GetBrush();
    if (!spTool) return;
    spTool->GetFreehand().m_clrBrush = color;
    NotifyTool();
}

void CColorWnd::SetHsv(const THsv& hsv) {
    m_circle.m_hsv = hsv;
    SetColor(ColorOfHsv(hsv));
}

void CColorWnd::Swap() {
    const auto spTool = GetBrush();
    if (!spTool) return;
    std::swap(spTool->GetFreehand().m_clrBrush, spTool->GetFreehand().m_clrBack);
    NotifyTool();
}

void CColorWnd::OnControl(TPanelControl& control) {
    const auto spTool = GetBrush();
    if (!spTool) return;
    const TColor color = spTool->GetFreehand().m_clrBrush;
    const auto by = static_cast<uint8_t>(std::clamp(control.nValue, 0, 255));
    const int nPercent = std::clamp(control.nValue, 0, 100);
    THsv hsv = m_circle.m_hsv;
    switch (control.nId) {
    case COLOR_SWAP:
        return Swap();
    case COLOR_HEX:
        if (const auto read = ReadHexColor(control.strText)) SetColor(*read);
        return;
    case COLOR_RED:
        return SetColor(MakeColor(by, GreenOf(color), BlueOf(color)));
    case COLOR_GREEN:
        return SetColor(MakeColor(RedOf(color), by, BlueOf(color)));
    case COLOR_BLUE:
        return SetColor(MakeColor(RedOf(color), GreenOf(color), by));
    case COLOR_HUE:
        hsv.nHue = std::clamp(control.nValue, 0, 359);
        return SetHsv(hsv);
    case COLOR_SATURATION:
        hsv.nSaturation = ByteOf(nPercent);
        return SetHsv(hsv);
    case COLOR_VALUE:
        hsv.nValue = ByteOf(nPercent);
        return SetHsv(hsv);
    default:
        return;
    }
}

void CColorWnd::OnPointer(int nId, EMessage id, CPoint pt) {
    if (!GetBrush()) return;
    if (nId == COLOR_CIRCLE && m_circle.OnPointer(id, pt)) SetHsv(m_circle.m_hsv);
    if (nId == COLOR_BOXES && id == EMessage::LButtonDown) Swap();
    if (nId == COLOR_RECENT && id == EMessage::LButtonDown)
        if (const int n = m_recent.FindAt(pt); n >= 0) SetColor(m_recent.m_vColors[static_cast<size_t>(n)]);
}

void CColorWnd::OnKey(int nId, int nKey) {
    if (nId == COLOR_CIRCLE && m_circle.OnKey(nKey)) return SetHsv(m_circle.m_hsv);
    if (nId == COLOR_BOXES && nKey == VK_Space) return Swap();
    if (nId != COLOR_RECENT) return;
    const int nLast = std::max(0, static_cast<int>(m_recent.m_vColors.size()) - 1);
    int& n = m_recent.m_nSelected;
    n = std::clamp(n + (nKey == VK_Right) - (nKey == VK_Left), 0, nLast);
    if (nKey == VK_Space && !m_recent.m_vColors.empty())
        return SetColor(m_recent.m_vColors[static_cast<size_t>(n)]);
    Refresh();
}
