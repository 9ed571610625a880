#include "ui/panels/QtPanel.h"

#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"
#include "ui/input/QtPen.h"
#include "ui/panels/QtPanelDocks.h"
#include "ui/panels/QtPanelTitle.h"
#include "ui/windows/QtMainWindow.h"
#include "ui/windows/QtMenu.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenu>
#include <QScrollArea>
#include <QStyleOption>
#include <QStylePainter>

#include <algorithm>
#include <utility>

namespace {

constexpr int MARGIN = 6;
constexpr int SPACING = 4;
constexpr int TITLE_BUTTONS = 52;
constexpr int PAGE_MARGIN = 20;
constexpr int PAGE_WIDTH = 640;   ///< at most, of the content of a page
constexpr int LEAST_HEIGHT = 100; ///< below which a panel scrolls

/// Scrolls what does not fit, so that no panel makes the main window larger.
class CContentArea : public QScrollArea {
public:
    explicit CContentArea(QWidget* pParent) : QScrollArea(pParent) {
        setFocusPolicy(Qt::NoFocus);
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    QSize sizeHint() const override { return widget() ? widget()->sizeHint() : QSize(); }
    QSize minimumSizeHint() const override {
        const QSize sz = widget() ? widget()->minimumSizeHint() : QSize(0, 0);
        return {sz.width(), std::min(sz.height(), LEAST_HEIGHT)};
    }
};

// True while the text of a list's row is being edited.
bool IsRowEdited() {
    const QWidget* pFocus = QApplication::focusWidget();
    return pFocus && pFocus->parentWidget() &&
           qobject_cast<const QAbstractItemView*>(pFocus->parentWidget()->parentWidget());
}

bool EditsText(const QObject* pObject) {
    return qobject_cast<const QLineEdit*>(pObject) || qobject_cast<const QAbstractSpinBox*>(pObject);
}

} // namespace

CQtPanel::CQtPanel(CQtPanelDocks& docks, IWindowClient& client, const TPanelSetup& setup)
    : CQtWindow(client, docks.GetMain().GetLife().GetPump(), docks.GetMain().GetKeys(),
                &docks.GetMain().GetLife(), &docks.GetMain()),
      m_docks(docks), m_main(docks.GetMain()) {
    setObjectName(ToQt(setup.strName));
    setFont(WithJapanese(font()));
    SetTitle(setup.strTitle);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    auto* pArea = new CContentArea(this);
    auto* pContent = new QWidget(pArea);
    // Without a list there is nothing to show in more height: it is left to the panels beside.
    m_bGrows = Fill(*pContent, setup.vControls);
    if (!m_bGrows) setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    WatchControls(*pContent);
    pArea->setWidget(pContent);
    setWidget(pArea);
    // In the desktop's own frame a floating panel would have no button to dock it, and its drags are not
    // reported.
    if (PlacesWindowsItself()) setTitleBarWidget(new CQtPanelTitle(*this));
    SetControls(setup.vControls);
    // The title is readable beside its two buttons.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + TITLE_BUTTONS);
    hide();
    m_docks.Add(*this);
    m_life.Open();
}

CQtPanel::~CQtPanel() = default;

TPanelEvents CQtPanel::MakeEvents() {
    return MakePanelEvents([this](EMessage id, int64_t wParam, int64_t lParam,
                                  const QString& strText) { m_life.Post(id, wParam, lParam, strText); },
                           [this] { FocusPicture(); });
}

bool CQtPanel::Fill(QWidget& content, const std::vector<TPanelControl>& vControls) {
    auto* pGrid = new QGridLayout(&content);
    pGrid->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);
    pGrid->setHorizontalSpacing(MARGIN);
    pGrid->setVerticalSpacing(SPACING);
    pGrid->setColumnStretch(1, 1);
    const TPanelEvents events = MakeEvents();
    QHBoxLayout* pLine = nullptr;
    int nRow = 0;
    bool bGrows = false;
    for (const TPanelControl& control : vControls) {
        const bool bLast = &control == &vControls.back();
        const bool bAlone = !control.bSameLine && (bLast || !(&control)[1].bSameLine);
        m_vControls.push_back(MakePanelControl(control, events, &content));
        QWidget* pWidget = m_vControls.back()->GetWidget();
        pWidget->setObjectName(QString::number(control.nId));
        pWidget->setAccessibleName(ToQt(control.strLabel.empty() ? control.strText : control.strLabel));
        // Only what edits text takes the keyboard from the picture by a click.
        if (qobject_cast<QAbstractButton*>(pWidget) || qobject_cast<QComboBox*>(pWidget))
            pWidget->setFocusPolicy(Qt::TabFocus);
        if (auto* pLabel = qobject_cast<QLabel*>(pWidget)) pLabel->setWordWrap(true);
        if (!control.bSameLine || !pLine) {
            TLine line;
            if (!control.strLabel.empty()) {
                line.pLabel = new QLabel(ToQt(control.strLabel), &content);
                pGrid->addWidget(line.pLabel, nRow, 0);
            }
            pLine = new QHBoxLayout;
            pLine->setSpacing(SPACING);
            pGrid->addLayout(pLine, nRow, line.pLabel ? 1 : 0, 1, line.pLabel ? 1 : 2);
            // Icons that are chosen between stand together; those of other lines fill the width.
            if (control.kind == TPanelControl::EKind::Toggle && !control.strIcon.empty())
                pGrid->setAlignment(pLine, Qt::AlignLeft);
            const bool bList = (control.kind == TPanelControl::EKind::List && !control.bGrid) ||
                               control.kind == TPanelControl::EKind::Tree;
            pGrid->setRowStretch(nRow, bList ? 1 : 0);
            bGrows = bGrows || bList;
            m_vLines.push_back(line);
            ++nRow;
        }
        m_vLines.back().vControls.push_back(m_vControls.size() - 1);
        const bool bButton = control.kind == TPanelControl::EKind::Toggle ||
                             control.kind == TPanelControl::EKind::Radio || !control.strIcon.empty() ||
                             (control.kind == TPanelControl::EKind::View && !bAlone);
        pLine->addWidget(pWidget, bButton ? 0 : 1);
    }
    if (bGrows) return true;
    pGrid->setRowStretch(nRow, 1);
    return false;
}

void CQtPanel::WatchControls(QWidget& content) {
    for (QWidget* pWidget : content.findChildren<QWidget*>()) pWidget->installEventFilter(this);
}

void CQtPanel::SetControls(const std::vector<TPanelControl>& vControls) {
    for (size_t idx = 0; idx < m_vControls.size(); ++idx) {
        QWidget* pWidget = m_vControls[idx]->GetWidget();
        pWidget->setEnabled(vControls[idx].bEnabled);
        pWidget->setVisible(vControls[idx].bVisible);
        m_vControls[idx]->Write(vControls[idx]);
    }
    for (const TLine& line : m_vLines) {
        if (!line.pLabel) continue;
        const TPanelControl& first = vControls[line.vControls.front()];
        line.pLabel->setVisible(first.bVisible);
        line.pLabel->setEnabled(first.bEnabled);
    }
}

void CQtPanel::ShowMenu(const std::vector<TMenuItem>& vMenu) {
    auto* pMenu = new QMenu(this);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    for (const TMenuItem& item : vMenu) {
        if (!item.nId) {
            pMenu->addSeparator();
            continue;
        }
        QAction* pAction = pMenu->addAction(ToQt(item.strText));
        SetActionState(*pAction, item.bEnabled, item.bChecked);
        connect(pAction, &QAction::triggered, this,
                [this, nId = item.nId] { m_life.Post(EMessage::Command, nId); });
    }
    pMenu->popup(m_main.GetPen().GetPointer());
}

void CQtPanel::OnLeave() { m_docks.Remove(*this); }

void CQtPanel::SetTitle(const std::wstring& strTitle) { setWindowTitle(ToQt(strTitle)); }

QSize CQtPanel::sizeHint() const {
    const QSize szContent = QDockWidget::sizeHint();
    if (m_place.rc.IsEmpty()) return szContent;
    // The layout starts from the place where the panel was.
    const int nHeight = m_place.rc.Height();
    return {m_place.rc.Width(), m_bGrows ? nHeight : std::min(nHeight, szContent.height())};
}

QRect CQtPanel::GetScreenRect() const {
    // Behind a tab Qt keeps a panel out of sight: it is where the one in front is.
    const QWidget* pFront = this;
    if (!isFloating() && visibleRegion().isEmpty())
        for (const QDockWidget* pDock : m_main.tabifiedDockWidgets(const_cast<CQtPanel*>(this)))
            if (!pDock->isFloating() && !pDock->visibleRegion().isEmpty()) pFront = pDock;
    if (isFloating() && PlacesWindowsItself()) return {ToQt(m_place.rc).topLeft(), size()};
    return isFloating() ? QRect(pos(), size()) : QRect(pFront->mapToGlobal(QPoint(0, 0)), pFront->size());
}

TPanelPlace CQtPanel::GetPlace() const {
    TPanelPlace place = m_place;
    place.bShow = IsShown();
    if (place.dock == EPanelDock::Page) return place;
    // A panel that never came to the glass has not moved.
    if (isHidden() || !m_main.isVisible()) return place;
    place.dock = isFloating() ? EPanelDock::Float
                 : m_main.dockWidgetArea(const_cast<CQtPanel*>(this)) == Qt::LeftDockWidgetArea
                     ? EPanelDock::Left
                     : EPanelDock::Right;
    place.rc = FromQt(GetScreenRect());
    place.bFront =
        !m_main.tabifiedDockWidgets(const_cast<CQtPanel*>(this)).isEmpty() && !visibleRegion().isEmpty();
    return place;
}

void CQtPanel::SetPlace(const TPanelPlace& place) {
    m_place = place;
    if (place.dock == EPanelDock::Page) return PutOverCanvases();
    if (place.dock == EPanelDock::Float) {
        m_main.addDockWidget(Qt::RightDockWidgetArea, this);
        setFloating(true);
        SetRect(place.rc);
        return;
    }
    setFloating(false);
    CQtPanel* pUnder = m_docks.FindAt(place, *this);
    m_main.addDockWidget(place.dock == EPanelDock::Left ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea,
                         this);
    if (pUnder) m_main.tabifyDockWidget(pUnder, this);
}

void CQtPanel::PutOverCanvases() {
    m_docks.Remove(*this);
    setFeatures(NoDockWidgetFeatures);
    setTitleBarWidget(new QWidget(this));
    setAutoFillBackground(true);
    auto* pArea = static_cast<QScrollArea*>(widget());
    pArea->setAlignment(Qt::AlignHCenter);
    pArea->widget()->setMaximumWidth(PAGE_WIDTH);
    pArea->widget()->layout()->setContentsMargins(PAGE_MARGIN, PAGE_MARGIN, PAGE_MARGIN, PAGE_MARGIN);
    QWidget* pCanvases = &m_main.GetMdiArea();
    setParent(pCanvases);
    setGeometry(pCanvases->rect());
    pCanvases->installEventFilter(this);
}

void CQtPanel::ShowPanel(bool bShow) {
    if (!bShow) m_place = GetPlace();
    m_place.bShow = bShow;
    setVisible(bShow);
    if (bShow) raise();
}

// A window of its own becomes the active one by a click; the keyboard is for the picture all the same, except
// to type into the panel.
void CQtPanel::GiveKeyboardBack() {
    if (isFloating() && !m_main.IsDestroyed()) m_main.activateWindow();
}

bool CQtPanel::eventFilter(QObject* pWatched, QEvent* pEvent) {
    if (pWatched == parent()) { // of a page
        if (pEvent->type() == QEvent::Resize) resize(static_cast<QWidget*>(pWatched)->size());
        return false;
    }
    // The wheel scrolls lists and the panel; other controls that it happens to pass over keep their values.
    if (pEvent->type() == QEvent::Wheel && !static_cast<QWidget*>(pWatched)->hasFocus() &&
        !qobject_cast<QAbstractItemView*>(pWatched->parent())) {
        pEvent->ignore();
        return true;
    }
    if (pEvent->type() == QEvent::MouseButtonRelease && !EditsText(pWatched) &&
        !EditsText(pWatched->parent()))
        GiveKeyboardBack();
    return QDockWidget::eventFilter(pWatched, pEvent);
}

bool CQtPanel::event(QEvent* pEvent) {
    const bool bHandled = QDockWidget::event(pEvent);
    const QEvent::Type type = pEvent->type();
    if (type == QEvent::MouseButtonRelease || type == QEvent::NonClientAreaMouseButtonRelease)
        GiveKeyboardBack();
    return bHandled;
}

void CQtPanel::keyPressEvent(QKeyEvent* pEvent) {
    const int nKey = pEvent->key();
    if (nKey != Qt::Key_Escape && nKey != Qt::Key_Return && nKey != Qt::Key_Enter)
        return QDockWidget::keyPressEvent(pEvent);
    // A list closes its editor a little later, and gives the keyboard back then: without the focus the editor
    // would be closed twice.
    if (!IsRowEdited()) FocusPicture();
}

// Qt draws no edge around a floating panel whose title is ours.
void CQtPanel::paintEvent(QPaintEvent* pEvent) {
    QDockWidget::paintEvent(pEvent);
    if (!isFloating() || !titleBarWidget()) return;
    QStylePainter painter(this);
    QStyleOptionFrame option;
    option.initFrom(this);
    painter.drawPrimitive(QStyle::PE_FrameDockWidget, option);
}

void CQtPanel::FocusPicture() {
    GiveKeyboardBack();
    m_main.FocusPicture();
}
