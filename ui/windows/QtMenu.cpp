#include "ui/windows/QtMenu.h"

#include "core/Commands/MenuTable.h"
#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"

#include <QMenuBar>

namespace {

/// The start of the title of the popup that lists the open windows.
constexpr wchar_t WINDOW_MENU[] = L"ウィンドウ";

} // namespace

void SetActionState(QAction& action, bool bEnabled, bool bChecked) {
    action.setEnabled(bEnabled);
    // Checkable only while checked, so that an unchecked item shows no empty box.
    action.setCheckable(bChecked);
    action.setChecked(bChecked);
}

QString ToolTipOf(const std::wstring& strMenuText) {
    const QStringList lstParts = ToQt(strMenuText).split(QLatin1Char('\t'));
    const QString strText = ToQt(PlainTextOf(strMenuText));
    return lstParts.size() < 2 ? strText : QStringLiteral("%1 (%2)").arg(strText, lstParts[1]);
}

CQtMenuSet::CQtMenuSet(const std::vector<TMenuItem>& vMenu, const TEvents& events) : m_events(events) {
    for (const TMenuItem& item : vMenu) {
        m_vTopMenus.push_back(std::make_unique<QMenu>());
        Fill(*m_vTopMenus.back(), item);
    }
}

void CQtMenuSet::Fill(QMenu& menu, const TMenuItem& item) {
    menu.setTitle(ToQt(item.strText));
    menu.setFont(WithJapanese(menu.font()));
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [this, &menu, strText = item.strText] {
        m_events.popup();
        if (strText.starts_with(WINDOW_MENU)) m_events.windowPopup(menu);
    });
    for (const TMenuItem& child : item.vChildren) {
        if (!child.vChildren.empty()) {
            Fill(*menu.addMenu(QString()), child);
        } else if (child.nId == 0) {
            menu.addSeparator();
        } else {
            QAction* pAction = menu.addAction(ToQt(child.strText));
            const int nId = child.nId;
            QObject::connect(pAction, &QAction::triggered, &menu, [this, nId] { m_events.command(nId); });
            m_mapActions.emplace(nId, pAction);
        }
    }
}

void CQtMenuSet::ShowIn(QMenuBar& menuBar) const {
    menuBar.clear();
    for (const std::unique_ptr<QMenu>& pMenu : m_vTopMenus) menuBar.addMenu(pMenu.get());
}

void CQtMenuSet::SetState(int nId, bool bEnabled, bool bChecked) {
    const auto [itFirst, itEnd] = m_mapActions.equal_range(nId);
    for (auto it = itFirst; it != itEnd; ++it) SetActionState(*it->second, bEnabled, bChecked);
}

void CQtMenuSet::SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts) {
    m_vRecent.clear();
    const auto [itFirst, itEnd] = m_mapActions.equal_range(nFirstId);
    for (auto it = itFirst; it != itEnd; ++it) {
        QAction* pPlace = it->second;
        pPlace->setVisible(vTexts.empty());
        auto* pMenu = qobject_cast<QMenu*>(pPlace->parent());
        for (size_t idx = 0; pMenu && idx < vTexts.size(); ++idx) {
            auto pAction = std::make_unique<QAction>(ToQt(vTexts[idx]));
            const int nId = nFirstId + static_cast<int>(idx);
            QObject::connect(pAction.get(), &QAction::triggered, pMenu,
                             [this, nId] { m_events.command(nId); });
            pMenu->insertAction(pPlace, pAction.get());
            m_vRecent.push_back(std::move(pAction));
        }
    }
}

void CQtMenuSet::SetTexts(const std::vector<TMenuItem>& vMenu) {
    ForEachCommand(vMenu, [this](const TMenuItem& item) {
        const auto [itFirst, itEnd] = m_mapActions.equal_range(item.nId);
        for (auto it = itFirst; it != itEnd; ++it) it->second->setText(ToQt(item.strText));
    });
}
