// A document window: one view of one canvas, and its commands.
#pragma once

#include "core/AppModule/MessageLoop.h"
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasFrame/CanvasScreen.h"
#include "core/CanvasFrame/CanvasView.h"
#include "core/CanvasFrame/FrameInput.h"
#include "core/CanvasFrame/SelectionOutline.h"
#include "core/CanvasFrame/ViewPlace.h"
#include "core/Platform/Window.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <list>
#include <optional>
#include <string>

struct TPictureEncoding;

class CCanvasFrame : public IWindowClient,
                     public IActiveView,
                     public IInputFrame,
                     public boost::enable_shared_from_this<CCanvasFrame>,
                     boost::noncopyable {
public:
    explicit CCanvasFrame(const boost::shared_ptr<CCanvasBuffer>& spCanvas);

    /// Creates and shows the frame's window inside the main frame's. False when the window system refuses.
    bool CreateWindowIn(IMainWindow& parent, const TCanvasWindowSetup& setup, const TFrameOutside& outside);
    /// The window; null before CreateWindowIn and after its destruction.
    ICanvasWindow* GetWindow() const { return m_pWindow; }
    const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const override { return m_spCanvas; }
    const CCanvasView& GetView() const { return m_view; }
    uint16_t GetZoom() const override { return m_view.GetState().uZoom; }
    CPoint ToClient(CPoint ptCanvas) const override { return m_view.ToWindow8(ptCanvas); }
    CPoint ToClientPixel(CPoint ptCanvas) const override { return m_view.PixelAt8(ptCanvas); }
    CPoint ToCanvas(CPoint ptClient) const override { return m_view.ToCanvas8(ptClient); }
    CRect GetShownRect() const override { return m_view.GetShownRect(); }
    int32_t GetDpi() const override;
    CFrameInput& GetInput() { return m_input; }

    bool OnMessage(const TMessage& msg) override;
    void OnPaint(IPaintTarget& target, const CRect& rc) override;
    void OnFinalMessage() override;

    /// Changes the view; a call inside another one does nothing.
    void ApplyView(const TViewState& view);
    /// ApplyView with another zoom; ignores 0.
    void SetZoom(uint16_t uZoom);
    /// Zooms by lines of the zoom list; what a client pixel shows stays there as far as the view can scroll.
    void ZoomAt(CPoint pt, int nStep);
    /// Shows the whole canvas in the middle of the window, at the largest entry of the zoom list that does,
    /// at most `uMostZoom`.
    void FitView(uint16_t uMostZoom = UINT16_MAX);
    /// Fits a new document and its window: the window takes the size that the document needs at 100 percent,
    /// as far as there is room, and shows all of it.
    void FitWindow();
    /// Scrolls the canvas's middle to the window's.
    void CenterView();
    /// Updates the window's title from the document.
    void UpdateTitle();
    /// Updates the title's mark for unsaved changes.
    void UpdateModified();
    /// Called when the canvas has changed: marks the screen copy as stale and lets the timer update its
    /// other views.
    void RaiseRefresh() { m_bNeedsRefresh = m_bScreenOld = true; }
    /// Repaints everything, changed or not.
    void InvalidateAll();

    const TFrameOutside& GetOutside() const override { return *m_pOutside; }
    ICanvasWindow& GetInputWindow() override { return *m_pWindow; }
    CCanvasView& GetInputView() override { return m_view; }
    bool IsActive() const override;
    void RequestRedraw() override;
    void ScrollTo(CPoint ptScroll) override;

    /// Saves the document; as a project under a new name, or without a name, by the save dialog. Failures
    /// are reported. The user may cancel it while it is written, unless `bMayCancel` is false.
    void Save(bool bAs, bool bMayCancel = true);
    /// Writes the picture in a format that the user chooses; the document, its path and its title stay as
    /// they are. Failures are reported.
    void Export();
    /// The canvas pixel under the pointer; nullopt when it is elsewhere.
    std::optional<CPoint> GetPointedPixel() const;
    /// Undo or redo, after completing pending work. While the tool is at work, undo only takes back what it
    /// does, and only if the tool allows that.
    void StepHistory(bool bUndo);
    /// Undoes or redoes, after completing pending work, until this action is the newest that is done; null
    /// undoes everything. An action that is in neither list has no effect.
    void GoToState(const boost::shared_ptr<CHistory>& spNewest);
    /// Completes pending work, calls a function that changes the tree or a layer's values, and shows the
    /// result. A function that returns false has changed nothing. Has no effect while the tool is at work.
    void EditTree(const boost::function<bool()>& fnEdit);
    /// Makes a layer the active one.
    void SelectLayer(const TLayerPtr& spLayer);

private:
    bool HandleMessage(const TMessage& msg);
    /// An operation in progress, which needs the present layers.
    bool IsToolAtWork() const;
    /// Calls a function that steps through the history. Unless it takes an unfinished operation back, pending
    /// work is completed before, and nothing happens while the tool is at work.
    void ChangeHistory(bool bTakesBack, const boost::function<void()>& fnChange);
    void OnCreate(CSize szArea);
    bool OnClose();
    /// Keeps a small picture of the saved document for the list of recent ones.
    void KeepPicture();
    bool MayCloseUnasked();
    void OnTimer(int nId);
    void OnSelectionTimer();
    CGDIBuffer* PaintOverlays(CGDIBuffer& screen, const CRect& rc);
    void OnScroll(bool bVertical, int32_t nOffset);
    std::vector<CRect> RefreshScreen();
    void RepaintChanges();
    void WritePicture(const std::wstring& strPath, const TPictureEncoding& encoding);
    /// Merges complete strokes, after the tool's open results have ended.
    void CompleteWork(EOpenEnd why = EOpenEnd::Commit);
    /// Asks the tool's question about its open results, if it has one, and ends them by the answer. False
    /// when the user keeps the document open.
    bool EndToolForClose();
    /// Adopts a new canvas size; what was in the window's middle stays there.
    void FollowCanvasSize();
    // All changes of the view but scrolling use this function.
    void ChangeView(const boost::function<void()>& fnChange);
    void UpdateScrollBars();
    bool IsOnlyViewOfCanvas() const;

    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    const TFrameOutside* m_pOutside = nullptr; ///< from CreateWindowIn on
    ICanvasWindow* m_pWindow = nullptr;
    CCanvasView m_view;
    CViewPlace m_place;
    CCanvasScreen m_screen;
    CFrameInput m_input{*this};
    std::unique_ptr<CGDIBuffer> m_pOverlaid; ///< the screen copy with overlays, valid where painted
    CSelectionDashes m_dashes;
    bool m_bNeedsRefresh = false;
    bool m_bScreenOld = true;      ///< canvas or view may have changed since the copy was updated
    bool m_bShownModified = false; ///< the title is marked at present
    bool m_bApplying = false;      ///< the view is changing
    int m_nFailedClosings = 0;     ///< consecutive failures
};

/// All open frames in creation order.
extern std::list<boost::shared_ptr<CCanvasFrame>> g_lstCanvasFrame;
/// The active frame.
extern boost::weak_ptr<CCanvasFrame> g_wpActiveFrame;

/// Creates a frame on a canvas and appends it to the list; the main frame creates its window.
boost::shared_ptr<CCanvasFrame> CreateCanvasFrame(const boost::shared_ptr<CCanvasBuffer>& spCanvas);
