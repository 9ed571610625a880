// The main frame's window: its place, theme, title, scale and zoom box.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/WindowPlacement.h"
#include "core/CanvasFrame/ZoomList.h"
#include "core/Commands/CommandIds.h"
#include "core/IniConfig/IniConfig.h"
#include "core/MainFrame/MainFrame.h"

#include <algorithm>

namespace {

constexpr CSize MINIMUM_SIZE{640, 480};
/// A first start on a screen without room for this fills it.
constexpr CSize ROOMY_SIZE{1280, 800};
constexpr wchar_t PLACEMENT_SECTION[] = L"Main";
constexpr wchar_t THEME[] = L"Theme";
constexpr wchar_t NO_SCALE[] = L"Scale: ----%";
constexpr wchar_t FIT_LINE[] = L"全体";
constexpr wchar_t APPLICATION[] = L"Vellumcraft";
constexpr int PANE_SCALE = 1;

boost::shared_ptr<CIniConfigData> OpenSection() {
    return g_AppModule.GetSettings().GetSection(L"Windows")->GetSection(PLACEMENT_SECTION);
}

} // namespace

void CMainFrame::PrepareWindow() {
    m_theme = static_cast<ETheme>(std::clamp(OpenSection()->GetInt(THEME, 0), 0, 2));
    m_pWindow->SetTheme(m_theme);
    m_pWindow->SetMinimumSize(MINIMUM_SIZE);
    const CRect rcFirst = m_pWindow->GetRect();
    m_pWindow->SetRect(PlaceOnScreen(ReadPlacement(PLACEMENT_SECTION, rcFirst), m_pWindow->GetScreens()));
    const bool bRoomy = rcFirst.Width() >= ROOMY_SIZE.cx && rcFirst.Height() >= ROOMY_SIZE.cy;
    m_pWindow->SetMaximized(ReadMaximized(PLACEMENT_SECTION, !bRoomy));
    std::vector<std::wstring> vZooms;
    for (const TZoomEntry& entry : GetZoomList()) vZooms.push_back(entry.pszText);
    vZooms.push_back(FIT_LINE);
    m_pWindow->SetZoomItems(vZooms);
    m_pWindow->SetStatusText(PANE_SCALE, NO_SCALE);
}

void CMainFrame::KeepPlace() {
    WritePlacement(PLACEMENT_SECTION, m_pWindow->GetRect(), {MaximizedValue(m_pWindow->IsMaximized())});
}

void CMainFrame::ChooseTheme(ETheme theme) {
    m_theme = theme;
    m_pWindow->SetTheme(theme);
    OpenSection()->SetInt(THEME, static_cast<int32_t>(theme));
}

std::wstring CMainFrame::ComposeTitle() {
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame) return APPLICATION;
    CCanvasBuffer& canvas = *spFrame->GetCanvas();
    return canvas.GetTitle() + (canvas.GetHistory().IsModified() ? L"*" : L"") + L" @ " +
           FormatPercent(spFrame->GetZoom()) + L" - " + APPLICATION;
}

void CMainFrame::UpdateTitle() {
    const std::wstring strTitle = ComposeTitle();
    if (strTitle == m_strTitle) return;
    m_strTitle = strTitle;
    m_pWindow->SetTitle(strTitle);
}

void CMainFrame::OnUpdateScale() {
    const auto spFrame = g_wpActiveFrame.lock();
    const uint16_t uZoom = spFrame ? spFrame->GetView().GetState().uZoom : 0;
    m_pWindow->SetStatusText(PANE_SCALE, spFrame ? FormatScale(uZoom) : NO_SCALE);
    m_pWindow->SelectZoomItem(FindZoomLine(uZoom));
}
