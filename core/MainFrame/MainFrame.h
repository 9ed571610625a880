// The top-level frame of a session: routes commands, updates their states, opens files, defines the order
// of closing.
#pragma once

#include "core/AppModule/MessageLoop.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/Commands.h"
#include "core/Commands/HeldKeys.h"
#include "core/Commands/Shortcuts.h"
#include "core/ImageFile/RecentPictures.h"
#include "core/IniConfig/RecentDocumentList.h"
#include "core/MainFrame/NewDocument.h"
#include "core/MainFrame/StartPage.h"
#include "core/MainFrame/StatusLine.h"
#include "core/Panels/PanelRest.h"
#include "core/Panels/Panels.h"
#include "core/Platform/Window.h"
#include "core/RasterMove/CanvasClipboard.h"
#include "core/RasterStroke/StrokeRandom.h"
#include "core/Tools/PenContact.h"
#include "core/Tools/Tools.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <deque>
#include <memory>
#include <string>
#include <vector>

struct TLeftSnapshot;

class CMainFrame : public IWindowClient, public IMessageFilter, public IIdleHandler, boost::noncopyable {
public:
    CMainFrame();
    ~CMainFrame() override;

    /// Creates and shows the window with its menu, tool bar, zoom box and status line, and registers the
    /// frame with the thread's message loop. Raises internal_error when the window system refuses.
    void CreateFrameWindow();
    /// The window; null before CreateFrameWindow and after its destruction.
    IMainWindow* GetWindow() const { return m_pWindow; }

    bool OnMessage(const TMessage& msg) override;
    void OnPaint(IPaintTarget&, const CRect&) override {}
    void OnFinalMessage() override;
    bool PreTranslateMessage(const TMessage& msg) override;
    bool OnIdle(int nCount) override;

    /// Opens a canvas window as MDI child. Raises internal_error when the window system refuses.
    void OpenFrame(const boost::shared_ptr<CCanvasFrame>& spFrame);
    /// Opens a file in a new frame and reports a failure to the user. True when it opened. Raises
    /// cancelled_error.
    bool OpenFile(const std::wstring& strPath);
    /// Creates a document with one raster layer and opens it; reports a failure to the user. True when it
    /// opened.
    bool CreateDocument(const TNewDocument& document);
    /// Queues a file to be opened; each idle pass opens one.
    void QueueFile(const std::wstring& strPath) { m_deqOpenFiles.push_back(strPath); }

    /// Schedules the recovery dialog for the next idle pass: documents left by broken sessions are opened
    /// as unsaved, deleted, or kept for the next start.
    void QueueRecovery() { m_bOfferRecovery = true; }

    /// Activates a tool by its number and cancels the old one's operation. Returns false and changes
    /// nothing for an unknown number.
    bool SwitchTool(int nId);
    CPanels& GetPanels() { return m_panels; }
    /// Shown while no document is open; not in the sessions of hosts.
    CStartPage& GetStartPage() { return m_startPage; }
    /// The message in the status line, beside the scale.
    const std::wstring& GetTold() const { return m_strTold; }

    /// True when the command's test enables it.
    bool IsCommandEnabled(int nId) const { return m_commands.GetState(nId).bEnabled; }
    bool IsCommandChecked(int nId) const { return m_commands.GetState(nId).bChecked; }

private:
    bool HandleMessage(const TMessage& msg);
    /// A menu with the keys that its commands have.
    std::vector<TMenuItem> MakeMenu(int nMenu) const;
    void BindCommands();
    void BindViewCommands();
    void OnCommand(const TMessage& msg);
    void OnFileNew();
    void OnFileClose();
    void OnFileOpen();
    void OnOpenRecent(int nIndex);
    /// Enters a document that was opened or saved in the recent ones, here and in the desktop's own list.
    void AddRecent(const std::wstring& strPath);
    void OnDropFile(const std::wstring& strPath);
    bool OnCopyData(const TMessage& msg);
    void OfferRecovery();
    void RestoreDocument(const TLeftSnapshot& left);
    /// Opens the document of the snapshot with that name, if it is still there.
    void RestoreLeft(const std::wstring& strName);
    void FinishFile(const TLeftSnapshot& left);
    void ShowStartPage();
    void OnViewNew();
    void OnManual();
    void OnAbout();
    void OnConfig();
    void ShowLayerAlone();
    void ChooseTheme(ETheme theme);
    void OnZoom(int nStep);
    void OnZoomCombo(int nLine);
    void OnUpdateScale();
    bool OnClose();
    void OnDestroy();
    void OnInitMenuPopup();
    /// Gives the new window what it has from the settings and the zoom box its lines.
    void PrepareWindow();
    void KeepPlace();
    /// "NAME* @ 50% - Vellumcraft" for the active document, with the mark if it has unsaved changes.
    static std::wstring ComposeTitle();
    void UpdateTitle();
    /// Marks the titles of changed documents and triggers their snapshots.
    void WatchDocuments();
    /// Notifies the panels of changes in the active document.
    void WatchChanges();
    /// Saves snapshots of unsaved documents for recovery at the next start.
    void KeepDocuments();
    /// Writes changed settings of the tool and the panels, at most twice a second.
    void WatchSettings();
    /// Closes a frame whose opening failed.
    void AbandonFrame(const boost::shared_ptr<CCanvasFrame>& spFrame);
    void OnToolNotice(EToolNotice notice);
    bool DoIdleWork();
    bool UpdatePanels(bool bStrokes);
    void FollowRest(const TMessage& msg);
    bool TranslateKey(const TMessage& msg);
    bool ContinueStrokes();
    void OnPenEnd(bool bEraser);
    int GetLayerEraser() const;
    void Tell(const std::wstring& strText);
    void ForgetTold();
    void UpdateStatus();

    IMainWindow* m_pWindow = nullptr;
    CShortcuts m_shortcuts;
    CHeldKeys m_heldKeys;
    CStrokeRandom m_random; ///< the random sequence of all strokes of a session
    CPenContact m_contact;
    CCanvasClipboard m_exchange;
    TToolOutside m_outside;
    boost::shared_ptr<CTools> m_spActiveTool;
    bool m_bEraserEnd = false;   ///< the pen's eraser end is near
    int m_nToolBeforeEraser = 0; ///< the tool to restore when the pen's tip comes back
    ETheme m_theme = ETheme::System;
    std::wstring m_strTitle; ///< the window's
    std::wstring m_strTold;  ///< the reason why presses are refused at present
    CRecentDocumentList m_recentList;
    CRecentPictures m_pictures;
    CStatusLine m_status;
    TFrameOutside m_frameOutside;
    CCommandTable m_commands;
    TPanelOutside m_panelOutside;
    CPanels m_panels{m_panelOutside};
    CPanelRest m_rest;
    CStartPage m_startPage;
    boost::weak_ptr<CCanvasBuffer> m_wpSeen; ///< the document that the panels show now
    uint32_t m_uSeenChanges = 0;
    bool m_bSeenModified = false;
    std::deque<std::wstring> m_deqOpenFiles;
    std::vector<int> m_vMenuCommands;
    std::vector<int> m_vToolBarCommands;
    uint32_t m_uSettingsTick = 0; ///< when settings were last written
    bool m_bOfferRecovery = false;
    bool m_bToldSnapshots = false; ///< the failure to write snapshots has been reported
};

/// The main frame, non-null exactly while it exists.
extern boost::shared_ptr<CMainFrame> g_pMainFrame;

/// Creates the main frame and its window. Raises internal_error.
void CreateMainFrame();
