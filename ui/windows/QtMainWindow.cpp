#include "ui/windows/QtMainWindow.h"

#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"
#include "ui/base/Theme.h"
#include "ui/input/QtKeyFilter.h"
#include "ui/input/QtPen.h"
#include "ui/windows/CopyData.h"
#include "ui/windows/ElidedLabel.h"
#include "ui/windows/QtCanvasWindow.h"
#include "ui/windows/QtFrameTabs.h"
#include "ui/windows/QtMdiArrange.h"
#include "ui/windows/QtToolBar.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

/// Neutral, so that it does not affect how colours in the picture are perceived.
constexpr QColor MDI_BACKGROUND(0x4a, 0x4a, 0x4a);
constexpr QSize FIRST_SIZE(1600, 1000);
constexpr int SETTLE_MS = 200; ///< until the desktop has put its frame around a window

} // namespace

CQtMainWindow::CQtMainWindow(IWindowClient& client, const TMainWindowSetup& setup, CQtEventPump& pump,
                             CQtKeyFilter& keys, CQtPen& pen)
    : CQtWindow(client, pump, keys), m_keys(keys), m_pen(pen), m_pTabs(new CQtFrameTabs(this)),
      m_pMdiArea(new QMdiArea(this)) {
    PrepareTopLevel(*this);
    if (OwnsApplication()) m_pTheme = std::make_unique<CQtTheme>();
    // A host that is a Qt program waits with its own windows open: block their input meanwhile.
    if (!OwnsApplication()) setWindowModality(Qt::ApplicationModal);
    setAcceptDrops(true);
    setContextMenuPolicy(Qt::NoContextMenu);
    SetTitle(setup.strTitle);

    m_pToolBar = new CQtToolBar(
        setup.vToolBar,
        [this](int nId, int nParameter) {
            m_life.Post(EMessage::Command, nId, nParameter);
            FocusPicture(); // also after a line of the zoom box was chosen
        },
        this);
    addToolBar(m_pToolBar);
    menuBar()->setNativeMenuBar(false);
    m_pMenus = MakeMenus(setup.vMenu);
    m_pMenus->ShowIn(*menuBar());
    MakeStatusBar();

    m_pMdiArea->setBackground(MDI_BACKGROUND);
    m_pMdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_pMdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_pMdiArea->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    m_pMdiArea->setFrameShape(QFrame::NoFrame);
    auto* pCentral = new QWidget(this);
    auto* pColumn = new QVBoxLayout(pCentral);
    pColumn->setContentsMargins(0, 0, 0, 0);
    pColumn->setSpacing(0);
    pColumn->addWidget(m_pTabs);
    pColumn->addWidget(m_pMdiArea);
    setCentralWidget(pCentral);
    m_pMdiArea->setFocus();
    connect(m_pMdiArea, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* pWindow) {
        // The area also reports null when the whole program becomes inactive: keep the child.
        if (!pWindow) pWindow = m_pMdiArea->currentSubWindow();
        SetActiveChild(dynamic_cast<CQtCanvasWindow*>(pWindow));
    });

    PlaceAtFirst();
    WatchScreens();
    m_keys.SetWindow(this, [this] { return GetReceiver(); });
    m_pen.SetWindow(this, [this] { return GetReceiver(); });
    m_life.Open();
}

CQtMainWindow::~CQtMainWindow() {
    disconnect(m_pMdiArea, nullptr, this, nullptr);
    for (const CQtCanvasWindow* pChild : m_vChildren) disconnect(pChild, nullptr, this, nullptr);
    // A failed session leaves its windows behind, whose clients may be destroyed.
    if (!IsDestroyed()) LeaveInput();
    m_life.Abandon();
}

// The window that gets the keys and the pen's proximity.
IWindow* CQtMainWindow::GetReceiver() {
    if (m_pActive) return m_pActive;
    return this;
}

// By the time this window is freed the keys and the pen may belong to another one.
void CQtMainWindow::LeaveInput() {
    m_keys.SetWindow(nullptr, {});
    m_pen.SetWindow(nullptr, {});
}

void CQtMainWindow::MakeStatusBar() {
    for (QLabel*& pLabel : m_apStatus) {
        pLabel = &pLabel == &m_apStatus[0] ? new CElidedLabel(this) : new QLabel(this);
        pLabel->setTextFormat(Qt::PlainText);
        pLabel->setContentsMargins(4, 0, 4, 0);
    }
    // A long text is cut instead of widening the window.
    m_apStatus[0]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // Panes of fixed width do not move while their texts change.
    m_apStatus[1]->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Scale: 00000%")) + 8);
    m_apStatus[2]->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000, 00000")) + 8);
    statusBar()->addWidget(m_apStatus[0], 1);
    for (const int nPane : {2, 1}) statusBar()->addPermanentWidget(m_apStatus[nPane]);
}

void CQtMainWindow::PlaceAtFirst() {
    const QRect rcScreen = QGuiApplication::primaryScreen()->availableGeometry();
    const QSize sz = FIRST_SIZE.boundedTo(rcScreen.size() * 9 / 10);
    CQtMainWindow::SetRect(FromQt(QRect(rcScreen.center() - QPoint(sz.width() / 2, sz.height() / 2), sz)));
}

std::unique_ptr<CQtMenuSet> CQtMainWindow::MakeMenus(const std::vector<TMenuItem>& vMenu) {
    auto pMenus = std::make_unique<CQtMenuSet>(
        vMenu, CQtMenuSet::TEvents{[this](int nId) { m_life.Post(EMessage::Command, nId); },
                                   [this] { m_life.Send(EMessage::InitMenuPopup); },
                                   [this](QMenu& menu) { Guarded([&] { ListWindows(menu); }); }});
    m_pToolBar->SetToolTips(vMenu);
    if (m_nFirstRecentId != 0) pMenus->SetRecentFiles(m_nFirstRecentId, m_vRecent);
    return pMenus;
}

CQtMenuSet& CQtMainWindow::GetShownMenus() {
    return m_pActive && !m_pActive->GetMenus().IsEmpty() ? m_pActive->GetMenus() : *m_pMenus;
}

void CQtMainWindow::CMenuLook::SetState(int nId, bool bEnabled, bool bChecked) {
    m_window.GetShownMenus().SetState(nId, bEnabled, bChecked);
}

void CQtMainWindow::ListWindows(QMenu& menu) {
    for (const QPointer<QAction>& pAction : std::exchange(m_vWindowActions, {})) delete pAction;
    if (m_vChildren.empty()) return;
    m_vWindowActions.reserve(1 + m_vChildren.size());
    m_vWindowActions.emplace_back(menu.addSeparator());
    int nNumber = 0;
    for (CQtCanvasWindow* pChild : m_vChildren) {
        QString strTitle = pChild->GetMarkedTitle();
        strTitle.replace(QLatin1Char('&'), QLatin1String("&&"));
        ++nNumber;
        QAction* pAction = menu.addAction((nNumber < 10 ? QStringLiteral("&%1 %2") : QStringLiteral("%1 %2"))
                                              .arg(QString::number(nNumber), strTitle));
        SetActionState(*pAction, true, pChild == m_pActive);
        connect(pAction, &QAction::triggered, pChild, [pChild] { pChild->Activate(); });
        m_vWindowActions.emplace_back(pAction);
    }
}

void CQtMainWindow::OnLeave() {
    SetActiveChild(nullptr);
    LeaveInput();
}

void CQtMainWindow::FocusPicture() {
    if (m_pActive) m_pActive->FocusView();
}

void CQtMainWindow::SetTitle(const std::wstring& strTitle) {
    m_strTitle = MarkableTitle(strTitle);
    setWindowTitle(m_strTitle);
}

void CQtMainWindow::OnShow() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    if (const auto fnFirstShown = std::exchange(m_fnFirstShown, {})) fnFirstShown();
    m_timerScreen.start(SETTLE_MS);
    raise();
    // An open dialog keeps the focus.
    QWidget* pModal = QApplication::activeModalWidget();
    (pModal ? pModal : this)->activateWindow();
}

bool CQtMainWindow::IsNormal() const { return !isMaximized() && !isFullScreen() && !isMinimized(); }

CRect CQtMainWindow::GetRect() const { return FromQt(IsNormal() ? GetPresentPlace() : m_rcPlace); }

QRect CQtMainWindow::GetPresentPlace() const {
    return {PlacesWindowsItself() ? m_rcPlace.topLeft() : pos(), size()};
}

void CQtMainWindow::SetRect(const CRect& rc) {
    m_rcPlace = ToQt(rc);
    CQtWindow::SetRect(rc);
}

ICommandLook& CQtMainWindow::GetToolBarLook() { return *m_pToolBar; }

void CQtMainWindow::SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts) {
    if (nFirstId == m_nFirstRecentId && vTexts == m_vRecent) return;
    m_nFirstRecentId = nFirstId;
    m_vRecent = vTexts;
    m_pMenus->SetRecentFiles(nFirstId, vTexts);
    for (CQtCanvasWindow* pChild : m_vChildren) pChild->GetMenus().SetRecentFiles(nFirstId, vTexts);
}

void CQtMainWindow::SetCommandTexts(const std::vector<TMenuItem>& vMenu) {
    m_pMenus->SetTexts(vMenu);
    for (CQtCanvasWindow* pChild : m_vChildren) pChild->GetMenus().SetTexts(vMenu);
    m_pToolBar->SetToolTips(vMenu);
}

void CQtMainWindow::SetStatusText(int nPane, const std::wstring& strText) {
    if (nPane >= 0 && nPane < 3) m_apStatus[nPane]->setText(ToQt(strText));
}

void CQtMainWindow::SetZoomItems(const std::vector<std::wstring>& vItems) {
    m_pToolBar->SetZoomItems(vItems);
}
void CQtMainWindow::SelectZoomItem(int nItem) { m_pToolBar->SelectZoomItem(nItem); }
int CQtMainWindow::GetZoomItem() const { return m_pToolBar->GetZoomItem(); }

void CQtMainWindow::ArrangeChildren(EArrange arrange) {
    const QSize szArea = m_pMdiArea->viewport()->size();
    std::vector<CQtCanvasWindow*> vIcons, vOpen;
    for (CQtCanvasWindow* pChild : m_vChildren) (pChild->isMinimized() ? vIcons : vOpen).push_back(pChild);
    if (arrange == EArrange::Icons) {
        QPoint pt(0, szArea.height());
        for (CQtCanvasWindow* pChild : vIcons) {
            if (pt.x() > 0 && pt.x() + pChild->width() > szArea.width()) pt = {0, pt.y() - pChild->height()};
            pChild->move(pt.x(), pt.y() - pChild->height());
            pt.rx() += pChild->width();
        }
        return;
    }
    const int nCount = static_cast<int>(vOpen.size());
    const int nStep = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const std::vector<QRect> vRects = arrange == EArrange::Cascade
                                          ? CascadeRects(szArea, nCount, nStep)
                                          : TileRects(szArea, nCount, arrange == EArrange::TileHorizontal);
    for (size_t idx = 0; idx < vOpen.size(); ++idx) {
        if (vOpen[idx]->isMaximized()) vOpen[idx]->showNormal();
        vOpen[idx]->setGeometry(vRects[idx]);
        if (arrange == EArrange::Cascade) vOpen[idx]->raise();
    }
    if (m_pActive) m_pActive->raise();
}

std::vector<CRect> CQtMainWindow::GetScreens() const {
    std::vector<CRect> vScreens;
    const QScreen* pPrimary = QGuiApplication::primaryScreen();
    if (pPrimary) vScreens.push_back(FromQt(pPrimary->availableGeometry()));
    for (const QScreen* pScreen : QGuiApplication::screens())
        if (pScreen != pPrimary) vScreens.push_back(FromQt(pScreen->availableGeometry()));
    return vScreens;
}

void CQtMainWindow::SetMinimumSize(CSize sz) {
    m_szMinimum = {sz.cx, sz.cy};
    setMinimumSize(m_szMinimum.boundedTo(screen()->availableSize()));
}

void CQtMainWindow::SetMaximized(bool bMaximized) {
    setWindowState(windowState().setFlag(Qt::WindowMaximized, bMaximized));
}

CSize CQtMainWindow::GetArea() const {
    const QSize sz = m_pMdiArea->viewport()->size();
    return {sz.width(), sz.height()};
}

void CQtMainWindow::SetTheme(ETheme theme) {
    if (m_pTheme) m_pTheme->Choose(theme);
}

// The desktop reports a maximised window's size before its state, or after.
void CQtMainWindow::KeepPlace() {
    if (IsNormal()) m_rcPlace = GetPresentPlace();
}

void CQtMainWindow::moveEvent(QMoveEvent* pEvent) {
    QMainWindow::moveEvent(pEvent);
    m_timerPlace.start(SETTLE_MS);
}

void CQtMainWindow::resizeEvent(QResizeEvent* pEvent) {
    QMainWindow::resizeEvent(pEvent);
    m_timerPlace.start(SETTLE_MS);
}

// A change of scale, resolution or of the screens themselves changes the sizes in Qt's pixels.
void CQtMainWindow::WatchScreens() {
    m_timerPlace.setSingleShot(true);
    connect(&m_timerPlace, &QTimer::timeout, this, [this] { KeepPlace(); });
    m_timerScreen.setSingleShot(true);
    connect(&m_timerScreen, &QTimer::timeout, this, [this] { Guarded([&] { FitScreen(); }); });
    const auto later = [this] { m_timerScreen.start(SETTLE_MS); };
    const auto watch = [this, later](QScreen* pScreen) {
        connect(pScreen, &QScreen::availableGeometryChanged, this, later);
    };
    for (QScreen* pScreen : QGuiApplication::screens()) watch(pScreen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, later);
}

void CQtMainWindow::FitScreen() {
    if (IsDestroyed()) return;
    const QSize szBorders = frameGeometry().size() - size();
    setMinimumSize(m_szMinimum.boundedTo(screen()->availableSize() - szBorders));
    if (IsNormal()) FitToScreens(*this, GetScreens());
    if (m_fnScreens) m_fnScreens();
}

void CQtMainWindow::AddChild(CQtCanvasWindow* pChild) {
    m_vChildren.push_back(pChild);
    UpdateTabs();
}

void CQtMainWindow::RemoveChild(CQtCanvasWindow* pChild) {
    std::erase(m_vChildren, pChild);
    UpdateTabs();
    if (pChild != m_pActive) return;
    // The previous one in the order of use becomes active.
    CQtCanvasWindow* pNext = nullptr;
    for (QMdiSubWindow* pWindow : m_pMdiArea->subWindowList(QMdiArea::ActivationHistoryOrder)) {
        auto* pCandidate = dynamic_cast<CQtCanvasWindow*>(pWindow);
        if (std::find(m_vChildren.begin(), m_vChildren.end(), pCandidate) != m_vChildren.end())
            pNext = pCandidate;
    }
    if (pNext) {
        pNext->Activate();
    } else {
        SetActiveChild(nullptr);
    }
}

void CQtMainWindow::SetActiveChild(CQtCanvasWindow* pChild) {
    if (pChild == m_pActive || (IsDestroyed() && pChild)) return;
    // Ignore a child that is being created or was destroyed.
    if (pChild && std::find(m_vChildren.begin(), m_vChildren.end(), pChild) == m_vChildren.end()) return;
    const CQtMenuSet* pShown = &GetShownMenus();
    CQtCanvasWindow* pOld = std::exchange(m_pActive, pChild);
    if (const CQtMenuSet* pMenus = &GetShownMenus(); pMenus != pShown) pMenus->ShowIn(*menuBar());
    UpdateTabs();
    if (pOld) SendMessage({pOld, EMessage::MdiActivate, 0, 0, {}});
    if (pChild && m_pActive == pChild) SendMessage({pChild, EMessage::MdiActivate, 1, 0, {}});
}

void CQtMainWindow::UpdateTabs() {
    // A window that is being created is not among the children yet.
    m_pTabs->ShowFrames(m_vChildren, m_pActive);
    centralWidget()->layout()->activate(); // a new frame's first view depends on the area
}

bool CQtMainWindow::event(QEvent* pEvent) {
    // An opened modal window takes the pointer, whose button may be down over a canvas. No other event does
    // so: Qt sends a drag to the window where it began until it ends.
    if (pEvent->type() == QEvent::WindowBlocked)
        for (CQtCanvasWindow* pChild : m_vChildren) pChild->LoseCapture();
    return QMainWindow::event(pEvent);
}

bool CQtMainWindow::nativeEvent(const QByteArray& type, void* pMessage, qintptr* pnResult) {
    const auto take = [&](const QString& str) { return m_life.Post(EMessage::CopyData, 0, 0, str); };
    return ReceiveCopyData(pMessage, *pnResult, take) || QMainWindow::nativeEvent(type, pMessage, pnResult);
}

void CQtMainWindow::changeEvent(QEvent* pEvent) {
    QMainWindow::changeEvent(pEvent);
    // Qt adds a maximised child's title and mark, which the title contains already.
    if (pEvent->type() == QEvent::WindowTitleChange && windowTitle() != m_strTitle)
        setWindowTitle(m_strTitle);
    if (pEvent->type() == QEvent::ModifiedChange && isWindowModified()) setWindowModified(false);
}

void CQtMainWindow::dragEnterEvent(QDragEnterEvent* pEvent) {
    const QList<QUrl> lstUrls = pEvent->mimeData()->urls();
    if (std::any_of(lstUrls.begin(), lstUrls.end(), [](const QUrl& url) { return url.isLocalFile(); }))
        pEvent->acceptProposedAction();
}

void CQtMainWindow::dropEvent(QDropEvent* pEvent) {
    for (const QUrl& url : pEvent->mimeData()->urls()) {
        if (!url.isLocalFile()) continue;
        Guarded([&] {
            if (m_life.Post(EMessage::DropFiles, 0, 0, url.toLocalFile())) pEvent->acceptProposedAction();
        });
    }
}
