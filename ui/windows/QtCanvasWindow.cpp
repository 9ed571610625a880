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

#include <QCloseEvent>
#include <QLayout>
#include <QMdiArea>
#include <QStyle>

#include <cmath>
#include <utility>

CQtCanvasWindow::CQtCanvasWindow(CQtMainWindow& parent, IWindowClient& client,
                                 const TCanvasWindowSetup& setup)
    : m_main(parent), m_pClient(&client), m_pMenus(parent.MakeMenus(setup.vMenu)),
      m_pView(new CQtCanvasView(
          {[this](CSize sz) {
               if (Hears()) SendMessage({this, EMessage::Size, sz.cx, sz.cy, {}});
           },
           [this](IPaintTarget& target, const CRect& rc) {
               if (Hears()) m_pClient->OnPaint(target, rc);
           },
           [this](bool bVertical, int nOffset) { Post(EMessage::Scroll, bVertical ? 1 : 0, nOffset); },
           [this](int nDelta) { Post(EMessage::MouseWheel, nDelta, 0); },
           [this](EMessage id, int64_t nKeys, CPoint pt) { Post(id, nKeys, PackPoint(pt.x, pt.y)); },
           [this](const QTabletEvent& event) {
               Guarded([&] { m_main.GetPen().Push(event, m_pView->devicePixelRatioF()); });
               Post(EMessage::PenPacket, 0, 0);
           },
           [this] { return m_main.GetActiveChild() == this; },
           [this](bool bPen) {
               if (bPen) Activate(); // for the mouse Qt activates it
               Post(bPen ? EMessage::PenActivate : EMessage::MouseActivate, 0, 0);
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
    m_main.AddChild(this);
}

CQtCanvasWindow::~CQtCanvasWindow() = default;

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
    switch (msg.id) {
    case EMessage::Close:
        Destroy();
        break;
    case EMessage::KeyDown:
        // The MDI child's own shortcut.
        if (msg.wParam == VK_F4 && m_main.GetKeys().IsKeyDown(VK_Control)) {
            close();
            break;
        }
        [[fallthrough]];
    case EMessage::KeyUp:
    case EMessage::SysKeyDown:
    case EMessage::SysKeyUp:
        m_main.GetKeys().Default(msg);
        break;
    default:
        break;
    }
}

void CQtCanvasWindow::Destroy() {
    if (m_bDestroyed) return;
    m_bDestroyed = true;
    m_main.RemoveChild(this);
    SendMessage({this, EMessage::Destroy, 0, 0, {}});
    m_mapTimers.clear();
    hide();
    std::exchange(m_pClient, nullptr)->OnFinalMessage();
    m_main.GetPump().Forget(this);
    m_main.GetPump().FreeLater(this);
}

void CQtCanvasWindow::Abandon() {
    m_bDestroyed = true;
    m_pClient = nullptr;
    m_mapTimers.clear();
    m_main.GetPump().Forget(this);
}

void CQtCanvasWindow::SetTitle(const std::wstring& strTitle) {
    m_strTitle = strTitle;
    setWindowTitle(MarkableTitle(strTitle));
}

void CQtCanvasWindow::SetModified(bool bModified) {
    setWindowModified(bModified);
    m_main.UpdateMark();
}

void CQtCanvasWindow::Show() {
    if (m_bDestroyed) return;
    show();
    Activate();
}

void CQtCanvasWindow::Activate() {
    if (m_bDestroyed) return;
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
    if (m_bDestroyed) return;
    auto pTimer = std::make_unique<TTimer>();
    TTimer& timer = *pTimer;
    connect(&timer.timer, &QTimer::timeout, this, [this, nId, &timer] {
        // At most one pending message of each kind, so that they do not pile up in a slow session.
        const uint64_t uRound = m_main.GetPump().GetRound();
        if (timer.uPostedRound == uRound) return;
        timer.uPostedRound = uRound;
        Post(EMessage::Timer, nId, 0);
    });
    timer.timer.start(nMilliseconds);
    m_mapTimers[nId] = std::move(pTimer);
}

void CQtCanvasWindow::SetFocus() {
    if (!m_pView->hasFocus() && !m_bDestroyed) FocusView();
}

// Qt itself sends the pointer to the window in which a button was pressed; this only stores the
// application's request.
void CQtCanvasWindow::SetCapture(bool bCapture) { m_bCapture = bCapture; }

void CQtCanvasWindow::LoseCapture() {
    if (std::exchange(m_bCapture, false)) Post(EMessage::CaptureChanged, 0, 0);
}

void CQtCanvasWindow::SetCursor(ECursor cursor) { m_pView->ShowCursor(cursor); }

CPoint CQtCanvasWindow::GetClientOrigin() const { return m_pView->GetClientOrigin(); }

int32_t CQtCanvasWindow::GetDpi() const {
    return static_cast<int32_t>(std::lround(96 * m_pView->devicePixelRatioF()));
}

bool CQtCanvasWindow::IsAt(CPoint ptScreen) const { return m_pView->IsAt(ptScreen); }

void CQtCanvasWindow::KillTimer(int nId) { m_mapTimers.erase(nId); }

void CQtCanvasWindow::Post(EMessage id, int64_t wParam, int64_t lParam) {
    if (Hears()) m_main.GetPump().Post({this, id, wParam, lParam, {}});
}

bool CQtCanvasWindow::focusNextPrevChild(bool bNext) { return m_main.MoveFocus(bNext); }

void CQtCanvasWindow::closeEvent(QCloseEvent* pEvent) {
    pEvent->ignore();
    Post(EMessage::Close, 0, 0);
}
