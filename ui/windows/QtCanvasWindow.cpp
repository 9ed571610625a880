#include "ui/windows/QtCanvasWindow.h"

#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "core/Platform/System.h"
#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"
#include "ui/base/SvgIcon.h"
#include "ui/input/QtEventPump.h"
#include "ui/input/QtKeyFilter.h"
#include "ui/input/QtPen.h"
#include "ui/windows/QtCanvasView.h"
#include "ui/windows/QtMainWindow.h"
#include "ui/windows/QtMdiArrange.h"

#include <QLayout>
#include <QMdiArea>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <utility>

CQtCanvasWindow::CQtCanvasWindow(CQtMainWindow& parent, IWindowClient& client,
                                 const TCanvasWindowSetup& setup)
    : CQtWindow(client, parent.GetLife().GetPump(), parent.GetKeys(), &parent.GetLife()), m_main(parent),
      m_pMenus(parent.MakeMenus(setup.vMenu)),
      m_pView(new CQtCanvasView(
          {[this](CSize sz) { m_life.Send(EMessage::Size, sz.cx, sz.cy); },
           [this](IPaintTarget& target, const CRect& rc) {
               if (m_life.IsOpen()) GetClient().OnPaint(target, rc);
           },
           [this](bool bVertical, int nOffset) { m_life.Post(EMessage::Scroll, bVertical ? 1 : 0, nOffset); },
           [this](int nDelta) { m_life.Post(EMessage::MouseWheel, nDelta); },
           [this](int nSteps, CPoint pt) { m_life.Post(EMessage::Pinch, nSteps, PackPoint(pt.x, pt.y)); },
           [this](EMessage id, int64_t nKeys, CPoint pt) { m_life.Post(id, nKeys, PackPoint(pt.x, pt.y)); },
           [this](const QTabletEvent& event) {
               Guarded([&] { m_main.GetPen().Push(event, m_pView->devicePixelRatioF()); });
               m_life.Post(EMessage::PenPacket);
           },
           [this] { return m_main.GetActiveChild() == this; },
           [this](bool bPen) {
               if (bPen) Activate(); // for the mouse Qt activates it
               m_life.Post(bPen ? EMessage::PenActivate : EMessage::MouseActivate);
           }},
          this)) {
    setWindowIcon(LoadPictureIcon("icons/app.svg"));
    setWidget(m_pView);
    MakeSystemMenu();
    SetTitle(setup.strTitle);
    QMdiArea& area = m_main.GetMdiArea();
    const int nChildren = static_cast<int>(area.subWindowList().size());
    area.addSubWindow(this);
    setGeometry(
        CascadeRects(area.viewport()->size(), nChildren + 1, style()->pixelMetric(QStyle::PM_TitleBarHeight))
            .back());
    m_rcPlace = geometry();
    SettleLayout();
    connect(this, &QMdiSubWindow::windowStateChanged, &m_main, [this] { m_main.UpdateTabs(); });
    m_main.AddChild(this);
    m_life.Open();
}

CQtCanvasWindow::~CQtCanvasWindow() {
    // Qt's destructor reports a change of the state, when the main window may be half destroyed.
    disconnect(this, &QMdiSubWindow::windowStateChanged, nullptr, nullptr);
}

void CQtCanvasWindow::MakeSystemMenu() {
    auto* pMenu = new QMenu(this);
    pMenu->setFont(WithJapanese(pMenu->font()));
    QAction* pRestore = pMenu->addAction(ToQt(L"元のサイズに戻す(&R)"), this, [this] { showNormal(); });
    QAction* pMinimize = pMenu->addAction(ToQt(L"最小化(&N)"), this, [this] { showMinimized(); });
    QAction* pMaximize = pMenu->addAction(ToQt(L"最大化(&X)"), this, [this] { showMaximized(); });
    pMenu->addSeparator();
    pMenu->addAction(ToQt(L"閉じる(&C)\tCtrl+F4"), this, [this] { close(); });
    connect(pMenu, &QMenu::aboutToShow, this, [=, this] {
        pRestore->setEnabled(isMinimized() || isMaximized());
        pMinimize->setEnabled(!isMinimized());
        pMaximize->setEnabled(!isMaximized());
    });
    setSystemMenu(pMenu);
}

void CQtCanvasWindow::DefaultMessage(const TMessage& msg) {
    constexpr int VK_F4 = 0x73;
    // The MDI child's own shortcut.
    if (msg.id == EMessage::KeyDown && msg.wParam == VK_F4 && m_main.GetKeys().IsKeyDown(VK_Control))
        close();
    else
        CQtWindow::DefaultMessage(msg);
}

void CQtCanvasWindow::OnLeave() {
    m_mapTimers.clear();
    m_main.RemoveChild(this);
}

void CQtCanvasWindow::SetTitle(const std::wstring& strTitle) {
    m_strTitle = strTitle;
    setWindowTitle(MarkableTitle(strTitle));
    m_main.UpdateTabs();
}

void CQtCanvasWindow::SetModified(bool bModified) {
    setWindowModified(bModified);
    m_main.UpdateTabs();
}

void CQtCanvasWindow::OnShow() {
    show();
    Activate();
}

void CQtCanvasWindow::Activate() {
    if (IsDestroyed()) return;
    m_main.GetMdiArea().setActiveSubWindow(this);
    m_main.SetActiveChild(this);
    FocusView();
}

void CQtCanvasWindow::FocusView() { m_pView->setFocus(); }

CRect CQtCanvasWindow::GetRect() const { return FromQt(m_rcPlace); }

void CQtCanvasWindow::SetRect(const CRect& rc) {
    if (isMaximized() || isMinimized()) showNormal();
    setGeometry(ToQt(rc));
    m_rcPlace = geometry();
    if (!isVisible()) SettleLayout();
}

void CQtCanvasWindow::SetMaximized(bool bMaximized) {
    if (IsDestroyed() || bMaximized == isMaximized()) return;
    bMaximized ? showMaximized() : showNormal();
}

void CQtCanvasWindow::FitTo(CSize szClient) {
    if (isMaximized() || isMinimized()) return;
    const qreal dScale = m_pView->devicePixelRatioF();
    const QSize szView(static_cast<int>(std::ceil(szClient.cx / dScale)),
                       static_cast<int>(std::ceil(szClient.cy / dScale)));
    const QSize szArea = m_main.GetMdiArea().viewport()->size();
    QRect rc(pos(), (size() - m_pView->viewport()->size() + szView).boundedTo(szArea));
    rc.moveLeft(std::clamp(rc.left(), 0, szArea.width() - rc.width()));
    rc.moveTop(std::clamp(rc.top(), 0, szArea.height() - rc.height()));
    SetRect(FromQt(rc));
}

void CQtCanvasWindow::KeepPlace() {
    if (!isMaximized() && !isMinimized()) m_rcPlace = geometry();
}

QString CQtCanvasWindow::GetMarkedTitle() const {
    QString strTitle = ToQt(m_strTitle);
    return isWindowModified() ? strTitle + QLatin1Char('*') : strTitle;
}

void CQtCanvasWindow::moveEvent(QMoveEvent* pEvent) {
    QMdiSubWindow::moveEvent(pEvent);
    KeepPlace();
}

void CQtCanvasWindow::resizeEvent(QResizeEvent* pEvent) {
    QMdiSubWindow::resizeEvent(pEvent);
    KeepPlace();
}

void CQtCanvasWindow::SettleLayout() {
    ensurePolished();
    // An activated layout ignores a hidden window's size.
    layout()->invalidate();
    layout()->activate();
    m_pView->SettleLayout();
}

void CQtCanvasWindow::Invalidate(const CRect& rc) { m_pView->Invalidate(rc); }
CSize CQtCanvasWindow::GetClientSize() const { return m_pView->GetClientSize(); }

void CQtCanvasWindow::SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset) {
    m_pView->SetScroll(szExtent, szLine, szPage, ptOffset);
}

void CQtCanvasWindow::SetTimer(int nId, int nMilliseconds) {
    if (IsDestroyed()) return;
    auto pTimer = std::make_unique<TTimer>();
    TTimer& timer = *pTimer;
    connect(&timer.timer, &QTimer::timeout, this, [this, nId, &timer] {
        // At most one pending message of each kind, so that they do not pile up in a slow session.
        const uint64_t uRound = m_life.GetPump().GetRound();
        if (timer.uPostedRound == uRound) return;
        timer.uPostedRound = uRound;
        m_life.Post(EMessage::Timer, nId);
    });
    timer.timer.start(nMilliseconds);
    m_mapTimers[nId] = std::move(pTimer);
}

void CQtCanvasWindow::SetFocus() {
    if (!m_pView->hasFocus() && !IsDestroyed()) FocusView();
}

// Qt itself sends the pointer to the window in which a button was pressed; this only stores the
// application's request.
void CQtCanvasWindow::SetCapture(bool bCapture) { m_bCapture = bCapture; }

void CQtCanvasWindow::LoseCapture() {
    if (std::exchange(m_bCapture, false)) m_life.Post(EMessage::CaptureChanged);
}

void CQtCanvasWindow::SetCursor(ECursor cursor) { m_pView->ShowCursor(cursor); }

CPoint CQtCanvasWindow::GetClientOrigin() const { return m_pView->GetClientOrigin(); }

int32_t CQtCanvasWindow::GetDpi() const {
    return static_cast<int32_t>(std::lround(96 * m_pView->devicePixelRatioF()));
}

bool CQtCanvasWindow::IsAt(CPoint ptScreen) const { return m_pView->IsAt(ptScreen); }

void CQtCanvasWindow::KillTimer(int nId) { m_mapTimers.erase(nId); }

bool CQtCanvasWindow::focusNextPrevChild(bool bNext) { return m_main.MoveFocus(bNext); }
