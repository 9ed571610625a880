#include "ui/windows/QtToolBar.h"

#include "ui/base/QtText.h"
#include "ui/base/SvgIcon.h"
#include "ui/windows/QtMenu.h"

#include <QComboBox>

#include <algorithm>

namespace {

constexpr int ID_ZOOM_BOX = 101;
constexpr int ZOOM_BOX_WIDTH = 60;
constexpr int ICON_SIDE = 24;

} // namespace

CQtToolBar::CQtToolBar(const std::vector<int>& vIds, const std::function<void(int, int)>& command,
                       QWidget* pParent)
    : QToolBar(pParent), m_pZoom(new QComboBox(this)) {
    setMovable(false);
    setFloatable(false);
    setIconSize({ICON_SIDE, ICON_SIDE});
    setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (const int nId : vIds) {
        if (nId == 0) {
            addSeparator();
            continue;
        }
        QAction* pAction = addAction(LoadLineIcon("icons/" + std::to_string(nId) + ".svg"), QString());
        connect(pAction, &QAction::triggered, this, [command, nId] { command(nId, 0); });
        m_mapActions[nId] = pAction;
    }
    addSeparator();
    const QString strZoom = ToQt(L"拡大率");
    m_pZoom->setAccessibleName(strZoom);
    m_pZoom->setToolTip(strZoom);
    m_pZoom->setMinimumWidth(ZOOM_BOX_WIDTH);
    m_pZoom->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_pZoom->setPlaceholderText(QStringLiteral(" "));
    // Show the whole list without scrolling.
    m_pZoom->setMaxVisibleItems(32);
    connect(m_pZoom, &QComboBox::activated, this, [command](int nItem) { command(ID_ZOOM_BOX, nItem); });
    addWidget(m_pZoom);
}

void CQtToolBar::SetState(int nId, bool bEnabled, bool bChecked) {
    const auto it = m_mapActions.find(nId);
    if (it != m_mapActions.end()) SetActionState(*it->second, bEnabled, bChecked);
}

void CQtToolBar::SetToolTips(const std::vector<TMenuItem>& vMenu) {
    ForEachCommand(vMenu, [this](const TMenuItem& item) {
        const auto it = m_mapActions.find(item.nId);
        if (it != m_mapActions.end()) it->second->setText(ToolTipOf(item.strText));
    });
}

void CQtToolBar::SetZoomItems(const std::vector<std::wstring>& vItems) {
    m_pZoom->clear();
    for (const std::wstring& strItem : vItems) m_pZoom->addItem(ToQt(strItem));
    m_pZoom->setCurrentIndex(-1);
}

void CQtToolBar::SelectZoomItem(int nItem) {
    m_pZoom->setCurrentIndex(nItem < m_pZoom->count() ? std::max(nItem, -1) : -1);
}

int CQtToolBar::GetZoomItem() const { return m_pZoom->currentIndex(); }
