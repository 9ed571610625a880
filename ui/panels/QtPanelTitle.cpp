#include "ui/panels/QtPanelTitle.h"

#include "ui/base/QtText.h"

#include <QApplication>
#include <QDockWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QToolButton>
#include <QWindow>

namespace {

constexpr int MARGIN = 4;

} // namespace

CQtPanelTitle::CQtPanelTitle(QDockWidget& panel)
    : QWidget(&panel), m_panel(panel), m_pText(new QLabel(panel.windowTitle(), this)) {
    auto* pLine = new QHBoxLayout(this);
    pLine->setContentsMargins(MARGIN, 0, 0, 0);
    pLine->setSpacing(0);
    pLine->addWidget(m_pText, 1);
    AddButton(QStyle::SP_TitleBarNormalButton, L"切り離す・戻す",
              [&panel] { panel.setFloating(!panel.isFloating()); });
    AddButton(QStyle::SP_TitleBarCloseButton, L"閉じる", [&panel] { panel.close(); });
    connect(&panel, &QWidget::windowTitleChanged, m_pText, &QLabel::setText);
}

void CQtPanelTitle::AddButton(QStyle::StandardPixmap icon, const wchar_t* pszText,
                              const std::function<void()>& fnClick) {
    auto* pButton = new QToolButton(this);
    pButton->setAutoRaise(true);
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setIcon(style()->standardIcon(icon, nullptr, &m_panel));
    const int nSide = style()->pixelMetric(QStyle::PM_DockWidgetTitleBarButtonMargin, nullptr, &m_panel) * 2 +
                      style()->pixelMetric(QStyle::PM_SmallIconSize);
    pButton->setFixedSize(nSide, nSide);
    pButton->setToolTip(ToQt(pszText));
    pButton->setAccessibleName(ToQt(pszText));
    connect(pButton, &QToolButton::clicked, this, fnClick);
    layout()->addWidget(pButton);
}

void CQtPanelTitle::mousePressEvent(QMouseEvent* pEvent) {
    m_ptPress = pEvent->position().toPoint();
    pEvent->setAccepted(m_panel.isFloating() && pEvent->button() == Qt::LeftButton);
}

void CQtPanelTitle::mouseMoveEvent(QMouseEvent* pEvent) {
    pEvent->setAccepted(m_panel.isFloating() && pEvent->buttons() == Qt::LeftButton);
    if (!pEvent->isAccepted()) return;
    const QPoint ptWay = pEvent->position().toPoint() - m_ptPress;
    if (ptWay.manhattanLength() >= QApplication::startDragDistance())
        window()->windowHandle()->startSystemMove();
}
