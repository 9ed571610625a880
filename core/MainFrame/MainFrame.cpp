#include "core/MainFrame/MainFrame.h"

#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Failure.h"
#include "core/Commands/CommandIds.h"
#include "core/Commands/MenuTable.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/IniConfig.h"
#include "core/MainFrame/CommandState.h"
#include "core/Panels/ToolTable.h"
#include "core/PathErase/PathEraser.h"
#include "core/Platform/Manual.h"
#include "core/Platform/System.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/Recovery/Recovery.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/make_shared.hpp>

#include <utility>

boost::shared_ptr<CMainFrame> g_pMainFrame;

void CreateMainFrame() {
    g_pMainFrame = boost::make_shared<CMainFrame>();
    g_pMainFrame->CreateFrameWindow();
}

CMainFrame::CMainFrame()
    : m_heldKeys(g_AppModule.GetPlatform().keys, m_shortcuts),
      m_exchange(g_AppModule.GetPlatform().clipboard), m_outside{g_AppModule.GetPlatform().clock,
                                                                 m_heldKeys,
                                                                 m_random,
                                                                 g_AppModule.GetSettings(),
                                                                 g_Switches,
                                                                 g_AppModule.GetPlatform().codecs,
                                                                 m_contact,
                                                                 m_exchange,
                                                                 [](int nId) {
                                                                     PostToMainFrame(EMessage::Command, nId);
                                                                 },
                                                                 [this](EToolNotice notice) {
                                                                     OnToolNotice(notice);
                                                                 }},
      m_recentList(CRecentDocumentList::FindStore(g_AppModule.GetPlatform()),
                   CRecentDocumentList::FindPath(g_AppModule.GetPlatform().locations)),
      m_pictures(g_AppModule.GetPlatform().files,
                 FindProfilePath(g_AppModule.GetPlatform().locations, L"RecentPictures.bin")),
      m_status(g_AppModule.GetPlatform().clock, m_heldKeys, m_shortcuts),
      m_frameOutside{g_AppModule.GetPlatform(),
                     g_AppModule.GetSettings(),
                     m_heldKeys,
                     g_AppModule.GetRecovery(),
                     m_pictures,
                     g_Switches,
                     g_wpActiveTool},
      m_panelOutside{g_AppModule.GetPlatform(),
                     g_AppModule.GetSettings(),
                     g_Switches,
                     m_commands,
                     m_shortcuts,
                     g_wpActiveTool,
                     g_wpActiveFrame},
      m_startPage(m_panelOutside, {m_recentList, m_pictures, g_AppModule.GetRecovery(),
                                   [this](const auto& left) { RestoreLeft(left); }}) {
    m_shortcuts = CShortcuts::Read(g_AppModule.GetSettings());
    BindCommands();
}

CMainFrame::~CMainFrame() {
    // After an exception a frame still has its window, which must not call destroyed objects.
    if (m_pWindow) m_pWindow->Destroy();
}

void CMainFrame::CreateFrameWindow() {
    const TPlatform& platform = g_AppModule.GetPlatform();
    m_strTitle = ComposeTitle();
    TMainWindowSetup setup{m_strTitle, MakeMenu(MENU_MAIN), LoadToolBar()};
    m_vToolBarCommands = setup.vToolBar;
    m_vMenuCommands = ListCommands(LoadMenu(MENU_CANVAS));
    m_pWindow = platform.windows.CreateMainWindow(*this, setup);
    if (!m_pWindow) throw internal_error(L"CreateMainFrame: the window could not be created.");
    g_AppModule.SetMainWindow(m_pWindow);
    PrepareWindow();
    m_panels.Create(*m_pWindow);
    m_startPage.Create(*m_pWindow, {EPanelDock::Page, {}, false});
    SwitchTool(TOOL_BRUSH);
    m_pWindow->Show();
    PostToMainFrame(WM_REFRESH_ALL);
    if (const auto spLoop = g_AppModule.GetMessageLoop()) {
        spLoop->AddMessageFilter(this);
        spLoop->AddIdleHandler(this);
    }
}

std::vector<TMenuItem> CMainFrame::MakeMenu(int nMenu) const {
    std::vector<TMenuItem> vMenu = LoadMenu(nMenu);
    m_shortcuts.Label(vMenu);
    return vMenu;
}

bool CMainFrame::OnMessage(const TMessage& msg) {
    bool bHandled = msg.id == EMessage::Close; // size of the canvas frames
    Guarded([&] { return bHandled = HandleMessage(msg); });
    return bHandled;
}

bool CMainFrame::HandleMessage(const TMessage& msg) {
    switch (msg.id) {
    case EMessage::Command:
        m_rest.End();
        OnCommand(msg);
        return true;
    case EMessage::Close:
        return OnClose();
    case EMessage::Destroy:
        OnDestroy();
        return false;
    case EMessage::EndSession:
        KeepDocuments();
        return true;
    case EMessage::InitMenuPopup:
        OnInitMenuPopup();
        return true;
    case EMessage::DropFiles:
        OnDropFile(msg.strText);
        return true;
    case EMessage::CopyData:
        return OnCopyData(msg);
    case EMessage::PenProximity: // while no frame exists to be notified
        return OnPenEnd(msg.wParam != 0 && msg.lParam == 2), true;
    default:
        break;
    }
    if (msg.id == WM_REFRESH_ALL) {
        for (const EMessage id : {WM_REFRESH_LAYERS, WM_REFRESH_HISTORY, WM_REFRESH_TOOL, WM_REFRESH_SCALE})
            SendMessage({m_pWindow, id});
        return true;
    }
    if (msg.id == WM_REFRESH_SCALE) return OnUpdateScale(), true;
    if (msg.id == WM_REFRESH_LAYERS || msg.id == WM_REFRESH_HISTORY || msg.id == WM_REFRESH_TOOL)
        return m_panels.Refresh(msg.id), true;
    if (msg.id == WM_TOOL_MESSAGE) {
        const auto spTool = g_wpActiveTool.lock();
        return !spTool || spTool->OnPrivateMessage(msg.wParam, msg.lParam);
    }
    if (msg.id == WM_PEN_END) return OnPenEnd(msg.wParam != 0), true;
    if (msg.id == WM_TELL) return Tell(msg.strText), true;
    if (msg.id == WM_SWITCH_TOOL) return SwitchTool(static_cast<int>(msg.wParam));
    if (msg.id == WM_ADD_RECENT) {
        AddRecent(msg.strText);
        return true;
    }
    return false;
}

void CMainFrame::OnFinalMessage() {
    m_pWindow = nullptr;
    g_AppModule.SetMainWindow(nullptr);
    g_AppModule.GetPlatform().queue.PostQuit();
}

void CMainFrame::OnDestroy() {
    if (const auto spLoop = g_AppModule.GetMessageLoop()) {
        spLoop->RemoveMessageFilter(this);
        spLoop->RemoveIdleHandler(this);
    }
    m_panels.Close();
    m_startPage.Close();
    g_AppModule.GetPlatform().manual.Close();
}

bool CMainFrame::OnClose() {
    Guarded([&] { KeepPlace(); });
    while (!g_lstCanvasFrame.empty()) {
        const size_t nBefore = g_lstCanvasFrame.size();
        SendMessage({g_lstCanvasFrame.back()->GetWindow(), EMessage::Close});
        if (g_lstCanvasFrame.size() == nBefore) return true;
    }
    return false;
}

bool CMainFrame::PreTranslateMessage(const TMessage& msg) {
    return Guarded([&] {
        FollowRest(msg);
        return TranslateKey(msg);
    });
}

bool CMainFrame::TranslateKey(const TMessage& msg) {
    IKeyState& keys = g_AppModule.GetPlatform().keys;
    if (msg.wParam == VK_Tab && keys.IsKeyDown(VK_Control)) return false;
    const int nCommand = m_shortcuts.FindCommand(msg, keys);
    const auto spFrame = g_wpActiveFrame.lock();
    // These commands depend on the finished picture, so strokes are rendered completely first.
    if (spFrame && (nCommand == ID_EDIT_UNDO || nCommand == ID_EDIT_REDO))
        spFrame->GetCanvas()->CompleteWork();
    // A shortcut of a disabled command is passed to the focused widget.
    if (!nCommand || !IsCommandEnabled(nCommand)) return false;
    SendMessage({m_pWindow, EMessage::Command, nCommand});
    return true;
}

bool CMainFrame::SwitchTool(int nId) {
    // The new tool may be of the same kind: it reads the settings that the old one writes.
    if (m_spActiveTool) m_spActiveTool->KeepSettings();
    const auto spTool = MakeTool(nId, m_outside);
    if (!spTool) return false;
    m_contact.Drop(); // the new tool draws from the next contact on
    if (m_spActiveTool && m_spActiveTool->GetState() != STATE_IDLE) m_spActiveTool->Cancel();
    SettleActiveTool(EOpenEnd::Tool);
    m_spActiveTool = spTool;
    g_wpActiveTool = spTool;
    PostToMainFrame(WM_REFRESH_TOOL);
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame) return true;
    Guarded([&] {
        spFrame->InvalidateAll();
        if (spFrame->GetWindow()) spFrame->GetInput().OnToolSwitched();
    });
    return true;
}

// Vector layers have an eraser of their own.
int CMainFrame::GetLayerEraser() const {
    const auto spFrame = g_wpActiveFrame.lock();
    const auto spLayer = spFrame ? spFrame->GetCanvas()->GetActiveLayer() : TLayerPtr();
    return dynamic_cast<const CVectorLayerBuffer*>(spLayer.get()) ? TOOL_PATH_ERASER : TOOL_ERASER;
}

// The end that was near has left, even without a report.
void CMainFrame::OnPenEnd(bool bEraser) {
    if (bEraser == m_bEraserEnd || !m_spActiveTool) return;
    const auto spFrame = g_wpActiveFrame.lock();
    if (m_spActiveTool->TellProximity(false) && spFrame) spFrame->RequestRedraw();
    if (m_spActiveTool->OnPenEnd(bEraser)) {
        m_bEraserEnd = bEraser;
        m_nToolBeforeEraser = 0;
        return;
    }
    const int nNow = m_spActiveTool->GetToolId();
    const bool bErases = nNow == TOOL_ERASER || nNow == TOOL_PATH_ERASER;
    if (bEraser) {
        const int nEraser = GetLayerEraser();
        m_nToolBeforeEraser = nNow != nEraser ? nNow : 0;
        if (nNow != nEraser) SwitchTool(nEraser);
    } else {
        // A tool that the user selected while the eraser was near stays active.
        if (bErases && m_nToolBeforeEraser != 0) SwitchTool(m_nToolBeforeEraser);
        m_nToolBeforeEraser = 0;
    }
    m_bEraserEnd = bEraser;
}

void CMainFrame::Tell(const std::wstring& strText) {
    m_strTold = strText;
    UpdateStatus();
}

void CMainFrame::OnToolNotice(EToolNotice notice) {
    // Immediate, so that the next user action sees the result.
    if (notice == EToolNotice::StrokeBegun)
        Guarded([&] { m_panels.OnStroke(); });
    else
        PostToMainFrame(WM_REFRESH_TOOL);
}

void CMainFrame::KeepDocuments() {
    // A message box would block the end of the process.
    const auto unasked = [](const auto& fn) {
        try {
            fn();
        } catch (const std::exception&) {
            // The other documents must still be saved.
        }
    };
    for (const auto& spFrame : g_lstCanvasFrame) {
        const auto& spCanvas = spFrame->GetCanvas();
        unasked([&] { spCanvas->CompleteWork(); });
        if (spCanvas->GetHistory().IsModified()) unasked([&] { g_AppModule.GetRecovery().Keep(spCanvas); });
    }
}

void CMainFrame::OnInitMenuPopup() {
    std::vector<std::wstring> vTexts;
    int nNumber = 0;
    // "&" in a menu text marks a letter; "&&" stands for one of the path.
    for (const std::wstring& strPath : m_recentList.GetPaths())
        vTexts.push_back(L"&" + std::to_wstring(++nNumber) + L" " +
                         boost::algorithm::replace_all_copy(strPath, L"&", L"&&"));
    m_pWindow->SetRecentFiles(ID_FILE_MRU_FIRST, vTexts);
    const TSetMenuState setState{m_pWindow->GetMenuLook()};
    for (const int nId : m_vMenuCommands) setState(nId, m_commands.GetState(nId));
    for (int n = 0; n < nNumber; ++n)
        setState(ID_FILE_MRU_FIRST + n, m_commands.GetState(ID_FILE_MRU_FIRST + n));
}

void CMainFrame::OpenFrame(const boost::shared_ptr<CCanvasFrame>& spFrame) {
    spFrame->GetCanvas()->GetHistory().SetLimits(g_Switches);
    // The frame sets its own title; until then the window has none.
    if (!spFrame->CreateWindowIn(*m_pWindow, {L"", MakeMenu(MENU_CANVAS)}, m_frameOutside))
        throw internal_error(L"CreateCanvasFrame: the window could not be created.");
}

void CMainFrame::AbandonFrame(const boost::shared_ptr<CCanvasFrame>& spFrame) {
    if (!spFrame) return;
    if (spFrame->GetWindow())
        g_AppModule.GetPlatform().queue.Post({spFrame->GetWindow(), EMessage::Close});
    else
        g_lstCanvasFrame.remove(spFrame);
}
