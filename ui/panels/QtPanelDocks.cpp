#include "ui/panels/QtPanelDocks.h"

#include "ui/base/QtApplication.h"
#include "ui/panels/QtPanel.h"
#include "ui/windows/QtMainWindow.h"

#include <algorithm>

CQtPanelDocks::CQtPanelDocks(CQtMainWindow& main) : m_main(main) {
    main.SetPanelEvents([this] { SizePanels(); }, [this] { FitPanels(); });
}

// Only a visible window divides its sides as requested, and only over it can panels float.
void CQtPanelDocks::SizePanels() {
    QList<QDockWidget*> lstDocks;
    QList<int> lstWidths, lstHeights;
    for (CQtPanel* pPanel : m_vPanels) {
        if (pPanel->isHidden()) continue;
        if (pPanel->isFloating()) {
            pPanel->hide();
            pPanel->ShowPanel(true);
            continue;
        }
        // Before a panel was shown its hint may be older than what it needs at least.
        const QSize sz = pPanel->sizeHint().expandedTo(pPanel->minimumSizeHint());
        lstDocks.append(pPanel);
        lstWidths.append(sz.width());
        lstHeights.append(sz.height());
    }
    m_main.resizeDocks(lstDocks, lstWidths, Qt::Horizontal);
    m_main.resizeDocks(lstDocks, lstHeights, Qt::Vertical);
    // The tab bar's current tab may be the last one while it shows the first: selecting it would have no
    // effect, so another is selected first.
    for (CQtPanel* pPanel : m_vPanels) {
        if (!pPanel->WasInFront()) continue;
        for (QDockWidget* pDock : m_main.tabifiedDockWidgets(pPanel)) pDock->raise();
        pPanel->raise();
    }
}

void CQtPanelDocks::FitPanels() {
    for (CQtPanel* pPanel : m_vPanels)
        if (pPanel->isFloating()) FitToScreens(*pPanel, m_main.GetScreens());
}

CQtPanel* CQtPanelDocks::FindAt(const TPanelPlace& place, const CQtPanel& except) const {
    const auto it = std::find_if(m_vPanels.begin(), m_vPanels.end(), [&](const CQtPanel* pPanel) {
        return pPanel != &except && !pPanel->isFloating() && pPanel->HasPlace(place);
    });
    return it == m_vPanels.end() ? nullptr : *it;
}
