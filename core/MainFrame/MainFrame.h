// The top-level frame of a session: routes commands, keeps their states, opens files, decides the order of
// closing.
#pragma once

#include "core/AppModule/MessageLoop.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/Commands.h"
#include "core/IniConfig/RecentDocumentList.h"
#include "core/Panels/Panels.h"
#include "core/Platform/Window.h"
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

    /// Makes and shows the window with its menu, tool bar, zoom box and status line, and enters the frame
    /// with the thread's message loop. Raises internal_error when the window system refuses.
    void CreateFrameWindow();
    /// The window, null before CreateFrameWindow and after it is gone.
    IMainWindow* GetWindow() const { return m_pWindow; }

    bool OnMessage(const TMessage& msg) override;
    void OnPaint(IPaintTarget&, const CRect&) override {}
    void OnFinalMessage() override;
    bool PreTranslateMessage(const TMessage& msg) override;
    bool OnIdle(int nCount) override;

    /// Opens a window on a canvas as MDI child. Raises internal_error when the window system refuses.
    void OpenFrame(const boost::shared_ptr<CCanvasFrame>& spFrame);
    /// Opens a file in a new frame; a failure is told to the user. True when it opened.
    bool OpenFile(const std::wstring& strPath);
    /// Puts a file in line to be opened; one is opened at each idle pass.
    void QueueFile(const std::wstring& strPath) { m_deqOpenFiles.push_back(strPath); }

    /// Has the user asked, when idle, what becomes of documents that broken sessions left: they are opened as
    /// unsaved ones, deleted, or kept for the next start.
    void QueueRecovery() { m_bOfferRecovery = true; }

    /// Makes the tool of a number the active one; the old one's operation is cancelled. A number without a
    /// tool leaves things as they are and answers false.
    bool SwitchTool(int nId);
    CPanels& GetPanels() { return m_panels; }
    /// The status line's text beside the scale.
    const std::wstring& GetTold() const { return m_strTold; }

    /// The state rules' answers for one command.
    bool IsCommandEnabled(int nId) const { return m_commands.GetState(nId).bEnabled; }
    bool IsCommandChecked(int nId) const { return m_commands.GetState(nId).bChecked; }

private:
    bool HandleMessage(const TMessage& msg);
    void BindCommands();
    void BindViewCommands();
    void OnCommand(const TMessage& msg);
    void OnFileNew();
    void OnFileClose();
    void OnFileOpen();
    void OnOpenRecent(int nIndex);
    void OnDropFile(const std::wstring& strPath);
    bool OnCopyData(const TMessage& msg);
    void OfferRecovery();
    void RestoreDocument(const TLeftSnapshot& left);
    void FinishFile(const TLeftSnapshot& left);
    void OnViewNew();
    void OnAbout();
    void OnConfig();
    void OnZoom(int nStep);
    void OnZoomCombo(int nLine);
    void OnUpdateScale();
    bool OnClose();
    void OnDestroy();
    void OnInitMenuPopup();
    /// Marks the titles of changed documents and has their snapshots taken.
    void WatchDocuments();
    /// Tells the panels of the active document's changes.
    void WatchChanges();
    /// Leaves what is unsaved for the next start to offer.
    void KeepDocuments();
    /// Writes what has been changed of the tool's and the panels' settings, at most twice a second.
    void WatchSettings();
    /// Closes a frame whose opening failed halfway.
    void AbandonFrame(const boost::shared_ptr<CCanvasFrame>& spFrame);
    void OnToolNotice(EToolNotice notice);
    bool DoIdleWork();
    bool TranslateKey(const TMessage& msg);
    bool ContinueStrokes();
    void OnPenEnd(bool bEraser);
    void Tell(const std::wstring& strText);
    void ForgetTold();

    IMainWindow* m_pWindow = nullptr;
    CStrokeRandom m_random; ///< one sequence for all strokes of a session
    CPenContact m_contact;
    TToolOutside m_outside;
    boost::shared_ptr<CTools> m_spActiveTool;
    bool m_bEraserEnd = false;   ///< which end of the pen is near
    int m_nToolBeforeEraser = 0; ///< what the pen's tip draws with while its other end erases
    std::wstring m_strTold;      ///< why a press did nothing, while that is so
    CPanels m_panels;
    CCommandTable m_commands;
    boost::weak_ptr<CCanvasBuffer> m_wpSeen; ///< the document that the panels show
    uint32_t m_uSeenChanges = 0;
    std::deque<std::wstring> m_deqOpenFiles;
    std::unique_ptr<CRecentDocumentList> m_pRecentList;
    std::vector<int> m_vMenuCommands;
    std::vector<int> m_vToolBarCommands;
    uint32_t m_uSettingsTick = 0; ///< when settings were last kept
    bool m_bOfferRecovery = false;
    bool m_bToldSnapshots = false; ///< the user knows that snapshots cannot be written
};

/// The main frame, non-null exactly while it exists.
extern boost::shared_ptr<CMainFrame> g_pMainFrame;

/// Makes the main frame and its window. Raises internal_error.
void CreateMainFrame();
