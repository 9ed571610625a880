// The main frame's own commands; all others go to the active frame.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/CommandIds.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Failure.h"
#include "core/CanvasFrame/ZoomList.h"
#include "core/ConfigDialog/ConfigDialog.h"
#include "core/ImageFile/ImageFile.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/MainFrame/AboutDialog.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/NewDialog.h"

namespace {

bool IsRecent(int nId) { return nId >= ID_FILE_MRU_FIRST && nId <= ID_FILE_MRU_LAST; }
bool IsPrediction(int nId) { return nId >= ID_PREDICTION_FIRST && nId <= ID_PREDICTION_LAST; }

} // namespace

bool CMainFrame::HandlesWithoutFrame(int nId) {
    if (IsRecent(nId)) return g_pMainFrame && nId - ID_FILE_MRU_FIRST < g_pMainFrame->GetRecentCount();
    switch (nId) {
    case ID_FILE_NEW:
    case ID_FILE_OPEN:
    case ID_APP_EXIT:
    case ID_APP_ABOUT:
    case ID_APP_CONFIG:
        return true;
    default:
        return false;
    }
}

bool CMainFrame::HandlesWithFrame(int nId) {
    switch (nId) {
    case ID_FILE_CLOSE:
    case ID_VIEW_NEW:
    case ID_ZOOM_IN:
    case ID_ZOOM_OUT:
    case ID_WINDOW_ARRANGE:
    case ID_WINDOW_CASCADE:
    case ID_WINDOW_TILE_HORZ:
    case ID_WINDOW_TILE_VERT:
        return true;
    default:
        return false;
    }
}

bool CMainFrame::OnCommand(const TMessage& msg) {
    const int nId = static_cast<int>(msg.wParam);
    const auto spFrame = g_wpActiveFrame.lock();
    if (IsRecent(nId)) return OnOpenRecent(nId - ID_FILE_MRU_FIRST), true;
    if (IsPrediction(nId))
        return g_Switches.m_nPredStroke = static_cast<uint8_t>(nId - ID_PREDICTION_FIRST), true;
    if (m_panels.Toggle(nId)) return true;
    switch (nId) {
    case ID_FILE_NEW:
        OnFileNew();
        return true;
    case ID_FILE_OPEN:
        OnFileOpen();
        return true;
    case ID_FILE_CLOSE:
        if (spFrame) g_AppModule.GetPlatform().queue.Post({spFrame->GetWindow(), EMessage::Close});
        return true;
    case ID_APP_EXIT:
        PostToMainFrame(EMessage::Close);
        return true;
    case ID_APP_ABOUT:
        OnAbout();
        return true;
    case ID_APP_CONFIG:
        OnConfig();
        return true;
    case ID_VIEW_NEW:
        OnViewNew();
        return true;
    case ID_ZOOM_IN:
        OnZoom(-1);
        return true;
    case ID_ZOOM_OUT:
        OnZoom(+1);
        return true;
    case IDC_ZOOM_COMBO:
        OnZoomCombo(static_cast<int>(msg.lParam));
        return true;
    case ID_VIEW_OUTLINE:
    case ID_VIEW_ALL_ANCHORS:
    case ID_VIEW_FAST_SCROLL:
        OnToggle(nId);
        return true;
    default:
        break;
    }
    if (OnArrange(nId)) return true;
    if (spFrame) SendMessage({spFrame->GetWindow(), EMessage::Command, nId});
    return spFrame != nullptr;
}

bool CMainFrame::OnArrange(int nId) {
    switch (nId) {
    case ID_WINDOW_ARRANGE:
        m_pWindow->ArrangeChildren(EArrange::Icons);
        return true;
    case ID_WINDOW_CASCADE:
        m_pWindow->ArrangeChildren(EArrange::Cascade);
        return true;
    case ID_WINDOW_TILE_HORZ:
        m_pWindow->ArrangeChildren(EArrange::TileHorizontal);
        return true;
    case ID_WINDOW_TILE_VERT:
        m_pWindow->ArrangeChildren(EArrange::TileVertical);
        return true;
    default:
        return false;
    }
}

void CMainFrame::OnToggle(int nId) {
    uint8_t& b = nId == ID_VIEW_OUTLINE       ? g_Switches.m_bShowOutline
                 : nId == ID_VIEW_ALL_ANCHORS ? g_Switches.m_bShowAllCtl
                                              : g_Switches.m_bFastScroll;
    b = !b;
    if (nId != ID_VIEW_FAST_SCROLL) InvalidateFrames();
}

void CMainFrame::OnFileNew() {
    const TPlatform& platform = g_AppModule.GetPlatform();
    CNewDialog dialog(platform.boxes);
    if (!platform.dialogs.Run(m_pWindow, dialog)) return;
    boost::shared_ptr<CCanvasFrame> spFrame;
    try {
        const auto spCanvas = CreateCanvas(dialog.GetSize(), dialog.IsColor());
        // One layer to draw on; it is part of the new document and nothing to be undone.
        const auto spLayer = CreateRasterLayer(spCanvas);
        spLayer->setName(L"新規ラスタレイヤー");
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        spCanvas->GetRoot().SetActiveChild(spLayer);
        spFrame = CreateCanvasFrame(spCanvas);
        OpenFrame(spFrame);
        PostToMainFrame(WM_REFRESH_ALL);
    } catch (const std::exception& e) {
        AbandonFrame(spFrame);
        ReportException(e);
    }
}

void CMainFrame::OnFileOpen() {
    const std::wstring strPath =
        g_AppModule.GetPlatform().fileDialogs.Ask(m_pWindow, {false, L"", L"vlm", GetOpenFilters()});
    if (!strPath.empty() && OpenFile(strPath)) m_pRecentList->Add(strPath);
}

void CMainFrame::OnOpenRecent(int nIndex) {
    const std::vector<std::wstring>& vPaths = m_pRecentList->GetPaths();
    if (nIndex >= static_cast<int>(vPaths.size())) return;
    const std::wstring strPath = vPaths[static_cast<size_t>(nIndex)];
    if (OpenFile(strPath))
        m_pRecentList->Add(strPath);
    else
        m_pRecentList->Remove(strPath);
}

void CMainFrame::OnDropFile(const std::wstring& strPath) {
    if (OpenFile(strPath)) m_pRecentList->Add(strPath);
}

bool CMainFrame::OnCopyData(const TMessage& msg) {
    if (msg.wParam != 0 || msg.strText.empty()) return false;
    QueueFile(msg.strText);
    return true;
}

bool CMainFrame::OpenFile(const std::wstring& strPath) {
    const TPlatform& platform = g_AppModule.GetPlatform();
    boost::shared_ptr<CCanvasFrame> spFrame;
    try {
        spFrame = CreateCanvasFrame(OpenDocument(strPath, platform.files, platform.codecs));
        OpenFrame(spFrame);
        PostToMainFrame(WM_REFRESH_ALL);
        return true;
    } catch (const loadimage_error& e) {
        AbandonFrame(spFrame);
        ReportFileFailure(g_strImageNotOpened, e.message, e.failure);
    } catch (const fileopen_error& e) {
        AbandonFrame(spFrame);
        ReportFileFailure(g_strFileNotOpened, e.message, e.failure);
    } catch (const deserialize_error&) {
        AbandonFrame(spFrame);
        ReportFileFailure(g_strFileDamaged, {}, EFileFailure::DamagedDocument);
    } catch (const std::exception& e) {
        AbandonFrame(spFrame);
        ReportException(e);
    }
    return false;
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

void CMainFrame::OnAbout() {
    const TPlatform& platform = g_AppModule.GetPlatform();
    CAboutDialog dialog(platform.modules, platform.clipboard);
    platform.dialogs.Run(m_pWindow, dialog);
}

void CMainFrame::OnConfig() {
    CConfigDialog dialog(g_AppModule.GetSettings());
    if (!g_AppModule.GetPlatform().dialogs.Run(m_pWindow, dialog)) return;
    // A tool reads its settings when it is made.
    if (m_spActiveTool) SwitchTool(m_spActiveTool->GetToolId());
}

void CMainFrame::OnZoom(int nStep) {
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame) return;
    const auto vZooms = GetZoomList();
    const uint16_t uZoom = spFrame->GetView().GetState().uZoom;
    // From a value that the list does not have, the next line in the wanted direction.
    int nLine = 0;
    while (nLine < static_cast<int>(vZooms.size()) && vZooms[static_cast<size_t>(nLine)].uZoom > uZoom)
        ++nLine;
    const bool bInList = FindZoomLine(uZoom) >= 0;
    const int nNew = nStep < 0 || bInList ? nLine + nStep : nLine;
    if (nNew >= 0 && nNew < static_cast<int>(vZooms.size()))
        spFrame->SetZoom(vZooms[static_cast<size_t>(nNew)].uZoom);
}

void CMainFrame::OnZoomCombo(int nLine) {
    const auto spFrame = g_wpActiveFrame.lock();
    const auto vZooms = GetZoomList();
    if (spFrame && nLine >= 0 && nLine < static_cast<int>(vZooms.size()))
        spFrame->SetZoom(vZooms[static_cast<size_t>(nLine)].uZoom);
    else
        OnUpdateScale(); // the box shows no line that is not in effect
}
