// A document window: one view of one canvas, and the commands that work on it.
#pragma once

#include "core/AppModule/MessageLoop.h"
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasFrame/CanvasScreen.h"
#include "core/CanvasFrame/CanvasView.h"
#include "core/CanvasFrame/FrameInput.h"
#include "core/Platform/Window.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <list>
#include <string>

class CCanvasFrame : public IWindowClient,
                     public IActiveView,
                     public IInputFrame,
                     public boost::enable_shared_from_this<CCanvasFrame>,
                     boost::noncopyable {
public:
    explicit CCanvasFrame(const boost::shared_ptr<CCanvasBuffer>& spCanvas);

    /// Makes the frame's window inside the main frame's and shows it. False when the window system refuses.
    bool CreateWindowIn(IMainWindow& parent, const TCanvasWindowSetup& setup);
    /// The window, null before CreateWindowIn and after it is gone.
    ICanvasWindow* GetWindow() const { return m_pWindow; }
    const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const override { return m_spCanvas; }
    const CCanvasView& GetView() const { return m_view; }
    uint16_t GetZoom() const override { return m_view.GetState().uZoom; }
    CPoint ToClient(CPoint ptCanvas) const override { return m_view.ToWindow8(ptCanvas); }
    CPoint ToCanvas(CPoint ptClient) const override { return m_view.ToCanvas8(ptClient); }
    CFrameInput& GetInput() { return m_input; }

    bool OnMessage(const TMessage& msg) override;
    void OnPaint(IPaintTarget& target, const CRect& rc) override;
    void OnFinalMessage() override;

    /// The single way to change a view; a nested call returns at once.
    void ApplyView(const TViewState& view);
    /// ApplyView with another zoom; 0 does nothing.
    void SetZoom(uint16_t uZoom);
    /// The title from the document's.
    void UpdateTitle();
    /// The title's mark from the document's state.
    void UpdateModified();
    /// The canvas has changed: what is shown of it is old, and its other views follow on the timer.
    void RaiseRefresh() { m_bNeedsRefresh = m_bScreenOld = true; }
    /// Paints everything anew, whatever has changed.
    void InvalidateAll();

    ICanvasWindow& GetInputWindow() override { return *m_pWindow; }
    CCanvasView& GetInputView() override { return m_view; }
    bool IsActive() const override;
    void RequestRedraw() override;
    void ScrollTo(CPoint ptScroll) override;

    /// Saves the document, as a project under a new name or without one by the save dialog; failures are
    /// told.
    void Save(bool bAs);
    /// Undo or redo, after all work that waits.
    void StepHistory(bool bUndo);
    /// Does a layer command after all work that waits.
    void ChangeTree(int nId);

private:
    bool HandleMessage(const TMessage& msg);
    void OnCreate();
    bool OnClose();
    bool MayCloseUnasked();
    void OnTimer(int nId);
    void OnSelectionTimer();
    CGDIBuffer* PaintOverlays(CGDIBuffer& screen, const CRect& rc);
    void OnScroll(bool bVertical, int32_t nOffset);
    std::vector<CRect> RefreshScreen();
    void RepaintChanges();
    /// Takes the canvas's size over when another one than the view's has come about.
    /// All that was drawn becomes part of the document.
    void CompleteWork();
    void FollowCanvasSize();
    void UpdateScrollBars();
    bool IsOnlyViewOfCanvas() const;

    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    ICanvasWindow* m_pWindow = nullptr;
    CCanvasView m_view;
    CCanvasScreen m_screen;
    CFrameInput m_input{*this};
    std::unique_ptr<CGDIBuffer> m_pOverlaid; ///< the screen copy with what lies over it, where it was painted
    CRect m_rcSelectionDirty;                ///< where dashes were painted that the next timer must take away
    bool m_bNeedsRefresh = false;
    bool m_bScreenOld = true;      ///< canvas or view may have changed since the copy was refreshed
    bool m_bShownModified = false; ///< the title's mark
    bool m_bApplying = false;      ///< ApplyView runs
    int m_nFailedClosings = 0;     ///< in a row
};

/// All open frames in creation order.
extern std::list<boost::shared_ptr<CCanvasFrame>> g_lstCanvasFrame;
/// The frame that has the user's attention.
extern boost::weak_ptr<CCanvasFrame> g_wpActiveFrame;

/// A new frame on a canvas, appended to the list; its window is made by the main frame.
boost::shared_ptr<CCanvasFrame> CreateCanvasFrame(const boost::shared_ptr<CCanvasBuffer>& spCanvas);
