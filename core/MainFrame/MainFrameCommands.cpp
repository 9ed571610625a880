// The handlers of the main frame's commands.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Failure.h"
#include "core/CanvasFrame/CanvasCommands.h"
#include "core/CanvasFrame/ZoomList.h"
#include "core/Commands/CommandIds.h"
#include "core/Commands/MenuTable.h"
#include "core/ConfigDialog/ConfigDialog.h"
#include "core/ImageFile/ImageFile.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/MainFrame/AboutDialog.h"
#include "core/MainFrame/KeyCommands.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/Manual.h"
#include "core/MainFrame/NewDialog.h"
#include "core/Panels/LayerWnd.h"
#include "core/Panels/ToolTable.h"
#include "core/Platform/RecentFiles.h"

#include <utility>

namespace {

bool IsDesktop(int) { return !g_bFilterBuild; }
bool HasFrame(int) { return !g_wpActiveFrame.expired(); }

} // namespace

void CMainFrame::BindCommands() {
    const auto bind = [this](int nId, void (CMainFrame::*pfn)(), const CCommandTable::TTest& fnEnabled = {}) {
        m_commands.Bind(
            nId, [this, pfn](int) { (this->*pfn)(); }, fnEnabled);
    };
    bind(ID_FILE_NEW, &CMainFrame::OnFileNew, IsDesktop);
    bind(ID_FILE_OPEN, &CMainFrame::OnFileOpen, IsDesktop);
    for (const int nId : {ID_NEW_A4_350, ID_NEW_A4_600, ID_NEW_FULL_HD, ID_NEW_LAST})
        m_commands.Bind(
            nId, [this](int n) { CreateDocument(*FindNewDocument(n, g_AppModule.GetSettings())); },
            [](int n) { return !g_bFilterBuild && FindNewDocument(n, g_AppModule.GetSettings()); });
    bind(ID_FILE_CLOSE, &CMainFrame::OnFileClose, HasFrame);
    bind(ID_APP_MANUAL, &CMainFrame::OnManual);
    bind(ID_APP_ABOUT, &CMainFrame::OnAbout);
    bind(ID_APP_CONFIG, &CMainFrame::OnConfig);
    bind(ID_VIEW_NEW, &CMainFrame::OnViewNew, HasFrame);
    bind(ID_LAYER_SOLO, &CMainFrame::ShowLayerAlone, [](int) {
        const auto spFrame = g_wpActiveFrame.lock();
        return spFrame && spFrame->GetCanvas()->GetActiveLayer();
    });
    m_commands.Bind(ID_APP_EXIT, [](int) { PostToMainFrame(EMessage::Close); });
    for (int nId = ID_FILE_MRU_FIRST; nId <= ID_FILE_MRU_LAST; ++nId)
        m_commands.Bind(
            nId, [this](int n) { OnOpenRecent(n - ID_FILE_MRU_FIRST); },
            [this](int n) {
                return n - ID_FILE_MRU_FIRST < static_cast<int>(m_recentList.GetPaths().size());
            });
    BindViewCommands();
    BindCanvasCommands(m_commands);
}

void CMainFrame::BindViewCommands() {
    const auto line = [this] { return m_pWindow ? m_pWindow->GetZoomItem() : -1; };
    m_commands.Bind(
        ID_ZOOM_IN, [this](int) { OnZoom(-1); }, [=](int n) { return HasFrame(n) && line() != 0; });
    m_commands.Bind(
        ID_ZOOM_OUT, [this](int) { OnZoom(+1); },
        [=](int n) { return HasFrame(n) && line() != static_cast<int>(GetZoomList().size()) - 1; });
    for (int nId = ID_PREDICTION_FIRST; nId <= ID_PREDICTION_LAST; ++nId)
        m_commands.Bind(
            nId, [](int n) { g_Switches.m_nPredStroke = static_cast<uint8_t>(n - ID_PREDICTION_FIRST); }, {},
            [](int n) { return n - ID_PREDICTION_FIRST == g_Switches.m_nPredStroke; });
    m_commands.Bind(
        ID_VIEW_FAST_SCROLL, [](int) { g_Switches.m_bFastScroll = !g_Switches.m_bFastScroll; }, {},
        [](int) { return g_Switches.m_bFastScroll != 0; });
    constexpr std::pair<int, uint8_t TGlobalSwitches::*> PATH_VIEWS[] = {
        {ID_VIEW_OUTLINE, &TGlobalSwitches::m_bShowOutline},
        {ID_VIEW_ALL_ANCHORS, &TGlobalSwitches::m_bShowAllCtl}};
    for (const auto& [nId, pSwitch] : PATH_VIEWS)
        m_commands.Bind(
            nId,
            [p = pSwitch](int) {
                g_Switches.*p = !(g_Switches.*p);
                for (const auto& spFrame : g_lstCanvasFrame) spFrame->InvalidateAll();
            },
            {}, [p = pSwitch](int) { return g_Switches.*p != 0; });
    for (const int nPanel : m_panels.GetCommands())
        m_commands.Bind(
            nPanel, [this](int n) { m_panels.Toggle(n); }, {}, [this](int n) { return m_panels.IsShown(n); });
    m_commands.Bind(
        ID_PANELS_HIDE, [this](int) { m_panels.ToggleAll(); }, {},
        [this](int) { return m_panels.AreHidden(); });
    for (int nId = ID_THEME_FIRST; nId <= ID_THEME_LAST; ++nId)
        m_commands.Bind(
            nId, [this](int n) { ChooseTheme(static_cast<ETheme>(n - ID_THEME_FIRST)); }, {},
            [this](int n) { return n - ID_THEME_FIRST == static_cast<int>(m_theme); });
    // A switch in the middle of a stroke would cancel it.
    const auto isIdle = [this](int) { return m_spActiveTool && m_spActiveTool->GetState() == STATE_IDLE; };
    for (const TToolRow& row : GetToolTable())
        m_commands.Bind(
            ID_SWITCH_TOOL_FIRST + row.info.nId, [this](int n) { SwitchTool(n - ID_SWITCH_TOOL_FIRST); },
            isIdle,
            [this](int n) {
                return m_spActiveTool && m_spActiveTool->GetToolId() == n - ID_SWITCH_TOOL_FIRST;
            });
    constexpr std::pair<int, EArrange> ARRANGEMENTS[] = {{ID_WINDOW_ARRANGE, EArrange::Icons},
                                                         {ID_WINDOW_CASCADE, EArrange::Cascade},
                                                         {ID_WINDOW_TILE_HORZ, EArrange::TileHorizontal},
                                                         {ID_WINDOW_TILE_VERT, EArrange::TileVertical}};
    for (const auto& [nId, arrange] : ARRANGEMENTS)
        m_commands.Bind(
            nId, [this, how = arrange](int) { m_pWindow->ArrangeChildren(how); }, HasFrame);
}

void CMainFrame::OnCommand(const TMessage& msg) {
    const int nId = static_cast<int>(msg.wParam);
    if (nId == IDC_ZOOM_COMBO)
        OnZoomCombo(static_cast<int>(msg.lParam));
    else
        m_commands.Do(nId);
}

void CMainFrame::OnFileClose() {
    if (const auto spFrame = g_wpActiveFrame.lock())
        g_AppModule.GetPlatform().queue.Post({spFrame->GetWindow(), EMessage::Close});
}

void CMainFrame::OnFileNew() {
    const TPlatform& platform = g_AppModule.GetPlatform();
    CNewDialog dialog(platform.boxes);
    if (!platform.dialogs.Run(m_pWindow, dialog)) return;
    CreateDocument(dialog.GetDocument());
}

bool CMainFrame::CreateDocument(const TNewDocument& document) {
    boost::shared_ptr<CCanvasFrame> spFrame;
    try {
        spFrame = CreateCanvasFrame(MakeDocument(document));
        OpenFrame(spFrame);
        spFrame->FitWindow();
        KeepNewDocument(document, g_AppModule.GetSettings());
        PostToMainFrame(WM_REFRESH_ALL);
        return true;
    } catch (const std::exception& e) {
        AbandonFrame(spFrame);
        ReportException(e);
    }
    return false;
}

void CMainFrame::OnFileOpen() {
    const std::wstring strPath =
        g_AppModule.GetPlatform().fileDialogs.Ask(m_pWindow, {false, L"", L"vlm", GetOpenFilters()});
    if (!strPath.empty() && OpenFile(strPath)) AddRecent(strPath);
}

void CMainFrame::OnOpenRecent(int nIndex) {
    const std::vector<std::wstring>& vPaths = m_recentList.GetPaths();
    if (nIndex >= static_cast<int>(vPaths.size())) return;
    const std::wstring strPath = vPaths[static_cast<size_t>(nIndex)];
    if (OpenFile(strPath))
        AddRecent(strPath);
    else
        m_recentList.Remove(strPath);
    m_startPage.Refresh();
}

void CMainFrame::AddRecent(const std::wstring& strPath) {
    m_recentList.Add(strPath);
    g_AppModule.GetPlatform().recent.Add(strPath);
}

void CMainFrame::OnDropFile(const std::wstring& strPath) {
    if (OpenFile(strPath)) AddRecent(strPath);
}

bool CMainFrame::OnCopyData(const TMessage& msg) {
    if (msg.wParam != 0 || msg.strText.empty()) return false;
    QueueFile(msg.strText);
    return true;
}

void CMainFrame::OnViewNew() {
    const auto spActive = g_wpActiveFrame.lock();
    if (!spActive) return;
    boost::shared_ptr<CCanvasFrame> spFrame;
    try {
        spFrame = CreateCanvasFrame(spActive->GetCanvas());
        OpenFrame(spFrame);
    } catch (const std::exception& e) {
        AbandonFrame(spFrame);
        ReportException(e);
    }
}

void CMainFrame::OnManual() { ShowManual(g_AppModule.GetPlatform(), *m_pWindow, m_shortcuts); }

void CMainFrame::OnAbout() {
    const TPlatform& platform = g_AppModule.GetPlatform();
    CAboutDialog dialog(platform.modules, platform.clipboard);
    platform.dialogs.Run(m_pWindow, dialog);
}

void CMainFrame::OnConfig() {
    CIniConfig& settings = g_AppModule.GetSettings();
    TPenCurve curve = TPenCurve::Read(settings);
    const TConfigOutside outside{
        g_AppModule.GetPlatform(), settings, g_Switches, m_shortcuts, curve, m_pWindow, ListKeyCommands()};
    CConfigDialog dialog(outside);
    if (!outside.platform.dialogs.Run(m_pWindow, dialog)) return;
    m_pWindow->SetCommandTexts(MakeMenu(MENU_CANVAS));
    for (const auto& spFrame : g_lstCanvasFrame) spFrame->GetInput().SetPenCurve(curve);
    PostToMainFrame(WM_REFRESH_ALL); // panels show limits and name keys
    // A tool reads its settings when it is created.
    if (m_spActiveTool) SwitchTool(m_spActiveTool->GetToolId());
}

void CMainFrame::ShowLayerAlone() {
    if (auto* pPanel = dynamic_cast<CLayerWnd*>(m_panels.Find(ID_PANEL_LAYER))) pPanel->ShowActiveAlone();
}

void CMainFrame::OnZoom(int nStep) {
    if (const auto spFrame = g_wpActiveFrame.lock())
        spFrame->SetZoom(StepZoom(spFrame->GetView().GetState().uZoom, nStep));
}

void CMainFrame::OnZoomCombo(int nLine) {
    const auto spFrame = g_wpActiveFrame.lock();
    const auto vZooms = GetZoomList();
    if (spFrame && nLine >= 0 && nLine < static_cast<int>(vZooms.size()))
        return spFrame->SetZoom(vZooms[static_cast<size_t>(nLine)].uZoom);
    if (nLine == static_cast<int>(vZooms.size())) m_commands.Do(ID_VIEW_FIT);
    OnUpdateScale(); // the box shows no entry that is not in effect
}
