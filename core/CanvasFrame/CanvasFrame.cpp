#include "core/CanvasFrame/CanvasFrame.h"

#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/CanvasFrame/FramePlace.h"
#include "core/CanvasFrame/LayerCommands.h"
#include "core/CanvasFrame/ZoomList.h"
#include "core/Commands/CommandIds.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/Platform/Bitmap.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Files.h"
#include "core/Platform/System.h"
#include "core/RasterMove/SelectionCommands.h"
#include "core/Recovery/Recovery.h"

#include <boost/make_shared.hpp>

#include <algorithm>

std::list<boost::shared_ptr<CCanvasFrame>> g_lstCanvasFrame;
boost::weak_ptr<CCanvasFrame> g_wpActiveFrame;

namespace {

// While a preview shows selected pixels elsewhere, the outline of their old place would only confuse.
boost::shared_ptr<CSelectBuffer> ShownSelect(const CCanvasBuffer& canvas) {
    const auto spLayer = ActiveRasterLayer(canvas);
    return spLayer && spLayer->GetOverlay() ? nullptr : canvas.GetSelect();
}

constexpr int TIMER_SELECTION = 15;
constexpr int TIMER_SELECTION_MS = 100;
constexpr int TIMER_REFRESH = 16;
constexpr int TIMER_REFRESH_MS = 500;
constexpr int MOST_FAILED_CLOSINGS = 3;

// A value for as long as a scope runs.
struct CScopedFlag : boost::noncopyable {
    explicit CScopedFlag(bool& b) : bFlag(b) { bFlag = true; }
    ~CScopedFlag() { bFlag = false; }
    bool& bFlag;
};

} // namespace

boost::shared_ptr<CCanvasFrame> CreateCanvasFrame(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    auto spFrame = boost::make_shared<CCanvasFrame>(spCanvas);
    g_lstCanvasFrame.push_back(spFrame);
    return spFrame;
}

CCanvasFrame::CCanvasFrame(const boost::shared_ptr<CCanvasBuffer>& spCanvas)
    : m_spCanvas(spCanvas), m_place(*spCanvas) {
    m_view.SetCanvasSize(m_spCanvas->GetSize());
}

bool CCanvasFrame::CreateWindowIn(IMainWindow& parent, const TCanvasWindowSetup& setup,
                                  const TFrameOutside& outside) {
    m_pOutside = &outside;
    m_pWindow = outside.platform.windows.CreateCanvasWindow(parent, *this, setup);
    if (!m_pWindow) return false;
    OnCreate(parent.GetArea());
    m_pWindow->Show();
    m_pWindow->Activate();
    return true;
}

void CCanvasFrame::OnCreate(CSize szArea) {
    m_pWindow->SetTimer(TIMER_SELECTION, TIMER_SELECTION_MS);
    m_pWindow->SetTimer(TIMER_REFRESH, TIMER_REFRESH_MS);
    PlaceFrame(*m_pWindow, szArea);
    m_input.Open();
    if (OpensMaximized()) m_pWindow->SetMaximized(true);
    TViewState view;
    view.uZoom = FirstZoom(m_spCanvas->GetSize(), m_pWindow->GetClientSize());
    ApplyView(view);
    CenterView();
    UpdateTitle();
}

void CCanvasFrame::UpdateTitle() {
    if (m_pWindow) m_pWindow->SetTitle(m_spCanvas->GetTitle());
}

void CCanvasFrame::UpdateModified() {
    const bool bModified = m_spCanvas->GetHistory().IsModified();
    if (!m_pWindow || bModified == m_bShownModified) return;
    m_bShownModified = bModified;
    m_pWindow->SetModified(bModified);
}

bool CCanvasFrame::OnMessage(const TMessage& msg) {
    bool bHandled = false;
    const bool bFailed = !Guarded([&] { bHandled = HandleMessage(msg); });
    if (msg.id != EMessage::Close) return bHandled;
    m_nFailedClosings = bFailed ? m_nFailedClosings + 1 : 0;
    return bFailed ? !MayCloseUnasked() : bHandled;
}

// A window whose closing failed stays, since nobody was asked about what it shows; but not for good. Then its
// document goes where the next start finds it.
bool CCanvasFrame::MayCloseUnasked() {
    if (m_nFailedClosings < MOST_FAILED_CLOSINGS) return false;
    return !IsOnlyViewOfCanvas() || Guarded([&] { return m_pOutside->recovery.Keep(m_spCanvas); });
}

bool CCanvasFrame::HandleMessage(const TMessage& msg) {
    FollowCanvasSize(); // a pointer's place is to be found on the canvas as it is now
    if (const auto bUsedUp = m_input.OnMessage(msg)) return *bUsedUp;
    switch (msg.id) {
    case EMessage::Close:
        return OnClose();
    case EMessage::Destroy:
        m_pWindow->KillTimer(TIMER_SELECTION);
        m_pWindow->KillTimer(TIMER_REFRESH);
        return false;
    case EMessage::Size:
        // Growing and shrinking keep the point in the middle of the window.
        if (!(m_view.GetClient() == m_pWindow->GetClientSize())) ApplyView(m_view.GetState());
        return true;
    case EMessage::Timer:
        OnTimer(static_cast<int>(msg.wParam));
        return true;
    case EMessage::Scroll:
        OnScroll(msg.wParam == 1, static_cast<int32_t>(msg.lParam));
        return true;
    case EMessage::MouseWheel:
        if (m_pOutside->platform.keys.IsKeyDown(VK_Control))
            return ZoomAt(m_input.GetPointer(), msg.wParam > 0 ? -1 : +1), true;
        PostToMainFrame(EMessage::Command, msg.wParam > 0 ? ID_ZOOM_IN : ID_ZOOM_OUT);
        return true;
    case EMessage::Pinch:
        ZoomAt({PackedX(msg.lParam), PackedY(msg.lParam)}, static_cast<int>(-msg.wParam));
        return true;
    case EMessage::MdiActivate:
        if (IsActive() != (msg.wParam != 0)) Guarded([] { SettleActiveTool(); });
        if (msg.wParam) {
            g_wpActiveFrame = shared_from_this();
            g_wpActiveView = boost::shared_ptr<IActiveView>(shared_from_this());
            InvalidateAll();
        } else if (IsActive()) {
            g_wpActiveFrame.reset();
            g_wpActiveView.reset();
        }
        Guarded([&] { m_input.OnActivate(); });
        PostToMainFrame(WM_REFRESH_ALL);
        return true;
    default:
        return false;
    }
}

void CCanvasFrame::OnPaint(IPaintTarget& target, const CRect& rc) {
    Guarded([&] {
        FollowCanvasSize();
        // The pen's events have brought the copy up to date already.
        const auto vChanged = m_bScreenOld ? RefreshScreen() : std::vector<CRect>();
        CGDIBuffer* pBuffer = m_screen.GetBuffer();
        if (!pBuffer) return true;
        pBuffer = PaintOverlays(*pBuffer, rc);
        target.Blit(pBuffer->GetPixelPtr({0, 0}), pBuffer->GetStride(), pBuffer->GetSize(), rc);
        // Changes outside of the painted rectangle are painted next.
        for (const CRect& rcChanged : vChanged)
            if (!(rcChanged.Union(rc) == rc)) m_pWindow->Invalidate(rcChanged);
        return true;
    });
}

// Only the active frame shows more than its canvas: what the tool draws over it, and the selection.
CGDIBuffer* CCanvasFrame::PaintOverlays(CGDIBuffer& screen, const CRect& rc) {
    if (!IsActive()) return &screen;
    const boost::shared_ptr<CSelectBuffer> spSelect = ShownSelect(*m_spCanvas);
    if (!m_dashes.Crosses(spSelect, m_view, rc) && m_input.GetOverlayRect().Intersect(rc).IsEmpty())
        return &screen;
    if (!m_pOverlaid || !(m_pOverlaid->GetSize() == screen.GetSize()))
        m_pOverlaid = std::make_unique<CGDIBuffer>(screen.GetSize());
    m_pOverlaid->CopyFrom(screen, rc);
    m_input.DrawOverlay(*m_pOverlaid, rc);
    m_dashes.Draw(*m_pOverlaid, rc, spSelect, m_view, m_pOutside->platform.clock.GetTickCount());
    return m_pOverlaid.get();
}

std::optional<CPoint> CCanvasFrame::GetPointedPixel() const {
    const auto ptPointer = m_input.GetInsidePointer();
    if (!ptPointer) return std::nullopt;
    const CPoint pt = m_view.ToCanvas8(*ptPointer);
    const CPoint ptPixel{pt.x >> 3, pt.y >> 3};
    const CSize sz = m_spCanvas->GetSize();
    if (ptPixel.x < 0 || ptPixel.y < 0 || ptPixel.x >= sz.cx || ptPixel.y >= sz.cy) return std::nullopt;
    return ptPixel;
}

int32_t CCanvasFrame::GetDpi() const { return m_pWindow ? m_pWindow->GetDpi() : DPI_NORMAL; }

bool CCanvasFrame::IsActive() const { return g_wpActiveFrame.lock().get() == this; }

void CCanvasFrame::OnFinalMessage() {
    m_pWindow = nullptr;
    const boost::shared_ptr<CCanvasFrame> spSelf = shared_from_this();
    g_lstCanvasFrame.remove(spSelf);
    if (g_bFilterBuild && g_lstCanvasFrame.empty()) Guarded([] { PostToMainFrame(EMessage::Close); });
}

bool CCanvasFrame::IsOnlyViewOfCanvas() const {
    return std::count_if(g_lstCanvasFrame.begin(), g_lstCanvasFrame.end(),
                         [&](const auto& spFrame) { return spFrame->m_spCanvas == m_spCanvas; }) <= 1;
}

void CCanvasFrame::CompleteWork(EOpenEnd why) {
    SettleActiveTool(why);
    m_spCanvas->CompleteWork();
}

void CCanvasFrame::FollowCanvasSize() {
    if (m_place.IsStale(*m_spCanvas, m_view)) ChangeView([this] { m_place.Follow(*m_spCanvas, m_view); });
}

std::vector<CRect> CCanvasFrame::RefreshScreen() {
    FollowCanvasSize();
    auto vChanged = m_screen.Refresh(*m_spCanvas, m_view);
    m_bScreenOld = false;
    return vChanged;
}

void CCanvasFrame::RepaintChanges() {
    if (!m_pWindow) return;
    for (const CRect& rc : RefreshScreen()) m_pWindow->Invalidate(rc);
}

void CCanvasFrame::InvalidateAll() {
    m_bScreenOld = true;
    if (!m_pWindow) return;
    m_pWindow->Invalidate();
    m_input.OnChangedBelow();
}

void CCanvasFrame::RequestRedraw() {
    if (!m_pWindow) return;
    RaiseRefresh();
    // First, so that a tool is not left standing when there is no memory for the changes.
    m_input.InvalidateOverlay();
    RepaintChanges();
}

void CCanvasFrame::ScrollTo(CPoint ptScroll) {
    m_view.ScrollTo(ptScroll);
    UpdateScrollBars();
    InvalidateAll();
}

bool CCanvasFrame::EndToolForClose() {
    const auto spTool = IsActive() ? m_pOutside->wpTool.lock() : boost::shared_ptr<CTools>();
    const wchar_t* pszQuestion = spTool && spTool->IsOpen() ? spTool->GetCloseQuestion() : nullptr;
    if (!pszQuestion) return true;
    const EBoxAnswer answer =
        m_pOutside->platform.boxes.Show(m_pWindow, pszQuestion, L"Vellumcraft", EBoxKind::YesNoCancelWarning);
    if (answer == EBoxAnswer::Cancel) return false;
    spTool->EndOpen(answer == EBoxAnswer::Yes ? EOpenEnd::Commit : EOpenEnd::Discard);
    return true;
}

bool CCanvasFrame::OnClose() {
    if (!EndToolForClose()) return true;
    CompleteWork();
    Guarded([&] { KeepFramePlace(*m_pWindow); });
    if (!IsOnlyViewOfCanvas()) return false;
    CRecovery& recovery = m_pOutside->recovery;
    if (!m_spCanvas->GetHistory().IsModified()) {
        KeepPicture();
        return recovery.Forget(*m_spCanvas), false;
    }
    const EBoxAnswer answer = m_pOutside->platform.boxes.Show(
        m_pWindow, L"更新されています。保存しますか？\n\n" + m_spCanvas->GetTitle(), L"Vellumcraft",
        EBoxKind::YesNoCancelWarning);
    if (answer == EBoxAnswer::Cancel) return true;
    if (answer == EBoxAnswer::Yes) Save(false, false); // a cancelled save would not keep the window open
    if (answer == EBoxAnswer::No || !m_spCanvas->GetHistory().IsModified())
        return recovery.Forget(*m_spCanvas), false;
    // It was not to be lost, and no file has it.
    if (recovery.Keep(m_spCanvas)) return false;
    recovery.TakeFailure();
    ShowErrorBox(g_strSnapshotNotWritten);
    return true;
}

void CCanvasFrame::StepHistory(bool bUndo) {
    CHistoryStream& history = m_spCanvas->GetHistory();
    // Undo takes an unfinished operation back; completing it first would make it an action.
    ChangeHistory(bUndo && history.IsUnfinished(), [&] { bUndo ? history.Undo() : history.Redo(); });
}

void CCanvasFrame::GoToState(const boost::shared_ptr<CHistory>& spNewest) {
    ChangeHistory(false, [&] { m_spCanvas->GetHistory().GoTo(spNewest); });
}

void CCanvasFrame::ChangeHistory(bool bTakesBack, const boost::function<void()>& fnChange) {
    Guarded([&] {
        if (!bTakesBack && IsToolAtWork()) return;
        if (!bTakesBack) CompleteWork(EOpenEnd::History);
        fnChange();
    });
    RaiseRefresh();
    InvalidateAll();
}

void CCanvasFrame::SelectLayer(const TLayerPtr& spLayer) {
    // The tool's open results belong to the layer that was active.
    Guarded([] { SettleActiveTool(); });
    m_spCanvas->SelectLayer(spLayer);
    for (const EMessage id : {WM_REFRESH_LAYERS, WM_REFRESH_TOOL}) PostToMainFrame(id);
    RequestRedraw();
}

bool CCanvasFrame::IsToolAtWork() const {
    const auto spTool = m_pOutside->wpTool.lock();
    return spTool && spTool->GetState() != STATE_IDLE;
}

void CCanvasFrame::EditTree(const boost::function<bool()>& fnEdit) {
    if (IsToolAtWork()) return;
    // An edit that failed halfway has changed what is shown all the same.
    bool bChanged = true;
    Guarded([&] {
        CompleteWork();
        return bChanged = fnEdit();
    });
    if (bChanged) RequestRedraw();
}

void CCanvasFrame::ApplyView(const TViewState& view) {
    ChangeView([&] { m_view.Apply(view, m_pWindow->GetClientSize()); });
}

void CCanvasFrame::ChangeView(const boost::function<void()>& fnChange) {
    if (m_bApplying || !m_pWindow) return;
    const CScopedFlag applying(m_bApplying);
    fnChange();
    UpdateScrollBars();
    InvalidateAll();
    PostToMainFrame(WM_REFRESH_SCALE);
}

void CCanvasFrame::SetZoom(uint16_t uZoom) {
    if (uZoom == 0) return;
    TViewState view = m_view.GetState();
    view.uZoom = uZoom;
    ApplyView(view);
}

void CCanvasFrame::ZoomAt(CPoint pt, int nStep) {
    const CPoint ptCanvas = m_view.ToCanvas8(pt);
    SetZoom(StepZoom(m_view.GetState().uZoom, nStep));
    ScrollTo(m_view.GetScroll() + (m_view.ToWindow8(ptCanvas) - pt));
}

void CCanvasFrame::FitView(uint16_t uMostZoom) {
    const CSize szPicture = ScaledSize(m_view.GetCanvasSize(), {48, m_view.GetState().uAngle});
    SetZoom(std::min(uMostZoom, FitZoom(szPicture, m_view.GetClient())));
    CenterView();
}

void CCanvasFrame::FitWindow() {
    if (!m_pWindow) return;
    m_pWindow->FitTo(CCanvasView::ExtentOf(ScaledSize(m_view.GetCanvasSize(), {48})));
    FitView(48);
}

void CCanvasFrame::CenterView() {
    m_view.Center();
    UpdateScrollBars();
    InvalidateAll();
}

void CCanvasFrame::UpdateScrollBars() {
    m_pWindow->SetScroll(m_view.GetExtent(), m_view.GetLine(), m_view.GetPage(), m_view.GetScroll());
}

void CCanvasFrame::OnScroll(bool bVertical, int32_t nOffset) {
    const CPoint ptScroll = m_view.GetScroll();
    m_view.ScrollTo(bVertical ? CPoint{ptScroll.x, nOffset} : CPoint{nOffset, ptScroll.y});
    InvalidateAll();
}

void CCanvasFrame::OnSelectionTimer() {
    const boost::shared_ptr<CSelectBuffer> spShown = IsActive() ? ShownSelect(*m_spCanvas) : nullptr;
    for (const CRect& rc : m_dashes.TakeStale(spShown, m_view)) m_pWindow->Invalidate(rc);
}

void CCanvasFrame::OnTimer(int nId) {
    if (nId == TIMER_SELECTION) OnSelectionTimer();
    if (nId != TIMER_REFRESH || !m_bNeedsRefresh) return;
    // Only the frame that was worked in repaints at once; the canvas's other views follow here.
    m_bNeedsRefresh = false;
    for (const auto& spFrame : g_lstCanvasFrame)
        if (spFrame->m_spCanvas == m_spCanvas) spFrame->RepaintChanges();
}
