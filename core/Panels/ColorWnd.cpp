#include "core/Panels/ColorWnd.h"

#include "core/IniConfig/IniConfig.h"
#include "core/Platform/System.h"
#include "core/RasterBrush/FreehandTools.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr wchar_t SECTION[] = L"ColorList";
constexpr wchar_t SLIDERS[] = L"Sliders";

} // namespace

boost::shared_ptr<CRasterBrushBase> CColorWnd::GetBrush() const {
    const auto spTool = boost::dynamic_pointer_cast<CRasterBrushBase>(GetTool());
    return spTool && spTool->DrawsInOwnColor() ? spTool : boost::shared_ptr<CRasterBrushBase>();
}

CColorWnd::CColorWnd(const wchar_t* pszSection, const TPanelOutside& outside) : CPanel(pszSection, outside) {
    using EKind = TPanelControl::EKind;
    m_vControls = {
        m_color.MakeCircle(),
        {.kind = EKind::View, .nId = COLOR_BOXES, .szView = {36, 36}, .pView = &m_boxes},
        {.kind = EKind::Button,
         .nId = COLOR_SWAP,
         .strText = L"入れ替え",
         .strIcon = "icons/color-swap.svg",
         .bSameLine = true},
        CColorControls::MakeText(),
        // Circle and sliders in one place, so that both panels below each other fit a small screen.
        {.kind = EKind::Toggle,
         .nId = COLOR_MODE,
         .strText = L"スライダー",
         .strIcon = "icons/color-sliders.svg",
         .bSameLine = true},
        {.kind = EKind::View, .nId = COLOR_RECENT, .szView = {200, 18}, .pView = &m_recent},
    };
    Find(COLOR_HEX).bSameLine = true;
    std::ranges::move(CColorControls::MakeSliders(), std::back_inserter(m_vControls));
}

void CColorWnd::ShowSliders(bool bSliders) {
    Find(COLOR_MODE).nValue = bSliders;
    Find(COLOR_CIRCLE).bVisible = !bSliders;
    for (int nId = COLOR_RED; nId <= COLOR_VALUE; ++nId) Find(nId).bVisible = bSliders;
}

void CColorWnd::OnOpen() {
    const auto spSection = GetOutside().settings.GetSection(SECTION);
    ShowSliders(spSection->GetInt(SLIDERS, 0) != 0);
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
    Find(COLOR_MODE).bEnabled = true;
    if (!spTool) return;
    const TColor color = spTool->GetFreehand().m_clrBrush;
    m_boxes.m_clrBrush = color;
    m_boxes.m_clrBack = spTool->GetFreehand().m_clrBack;
    m_color.Show(m_vControls, color);
}

void CColorWnd::SetColor(TColor color) {
    const auto spTool = GetBrush();
    if (!spTool) return;
    spTool->GetFreehand().m_clrBrush = color;
    NotifyTool();
}

void CColorWnd::Swap() {
    const auto spTool = GetBrush();
    if (!spTool) return;
    std::swap(spTool->GetFreehand().m_clrBrush, spTool->GetFreehand().m_clrBack);
    NotifyTool();
}

void CColorWnd::OnControl(TPanelControl& control) {
    if (control.nId == COLOR_MODE) {
        const bool bSliders = control.nValue != 0;
        GetOutside().settings.GetSection(SECTION)->SetInt(SLIDERS, bSliders);
        return ShowSliders(bSliders);
    }
    if (!GetBrush()) return;
    if (control.nId == COLOR_SWAP) return Swap();
    if (const auto color = m_color.OnControl(control)) SetColor(*color);
}

void CColorWnd::OnPointer(int nId, EMessage id, CPoint pt) {
    if (!GetBrush()) return;
    if (const auto color = m_color.OnPointer(nId, id, pt)) SetColor(*color);
    if (nId == COLOR_BOXES && id == EMessage::LButtonDown) Swap();
    if (nId == COLOR_RECENT && id == EMessage::LButtonDown)
        if (const int n = m_recent.FindAt(pt); n >= 0) SetColor(m_recent.m_vColors[static_cast<size_t>(n)]);
}

void CColorWnd::OnKey(int nId, int nKey) {
    if (const auto color = m_color.OnKey(nId, nKey)) return SetColor(*color);
    if (nId == COLOR_BOXES && nKey == VK_Space) return Swap();
    if (nId != COLOR_RECENT) return;
    const int nLast = std::max(0, static_cast<int>(m_recent.m_vColors.size()) - 1);
    int& n = m_recent.m_nSelected;
    n = std::clamp(n + (nKey == VK_Right) - (nKey == VK_Left), 0, nLast);
    if (nKey == VK_Space && !m_recent.m_vColors.empty())
        return SetColor(m_recent.m_vColors[static_cast<size_t>(n)]);
    Refresh();
}
