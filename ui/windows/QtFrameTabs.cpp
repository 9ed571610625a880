#include "ui/windows/QtFrameTabs.h"

#include "ui/windows/QtCanvasWindow.h"

#include <QMouseEvent>
#include <QSignalBlocker>

#include <algorithm>

CQtFrameTabs::CQtFrameTabs(QWidget* pParent) : QTabBar(pParent) {
    setDocumentMode(true);
    setDrawBase(false);
    setExpanding(false);
    setTabsClosable(true);
    setElideMode(Qt::ElideMiddle);
    setFocusPolicy(Qt::NoFocus); // the keyboard stays with the picture
    hide();
    connect(this, &QTabBar::currentChanged, this, [this](int nTab) {
        if (nTab >= 0) m_vFrames[static_cast<size_t>(nTab)]->Activate();
    });
    connect(this, &QTabBar::tabCloseRequested, this, [this](int nTab) { CloseAt(nTab); });
}

void CQtFrameTabs::ShowFrames(const std::vector<CQtCanvasWindow*>& vFrames, const CQtCanvasWindow* pActive) {
    const QSignalBlocker block(this);
    m_vFrames = vFrames;
    const auto nFrames = static_cast<int>(vFrames.size());
    while (count() > nFrames) removeTab(count() - 1);
    while (count() < nFrames) addTab(QString());
    for (int nTab = 0; nTab < nFrames; ++nTab) {
        const QString strTitle = vFrames[static_cast<size_t>(nTab)]->GetMarkedTitle();
        setTabText(nTab, QString(strTitle).replace(QLatin1Char('&'), QLatin1String("&&")));
        setTabToolTip(nTab, strTitle);
    }
    const auto it = std::ranges::find(vFrames, pActive);
    if (it != vFrames.end()) setCurrentIndex(static_cast<int>(it - vFrames.begin()));
    setVisible(pActive && pActive->isMaximized());
}

void CQtFrameTabs::CloseAt(int nTab) {
    if (nTab >= 0) m_vFrames[static_cast<size_t>(nTab)]->close();
}

void CQtFrameTabs::mouseReleaseEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == Qt::MiddleButton) return CloseAt(tabAt(pEvent->position().toPoint()));
    QTabBar::mouseReleaseEvent(pEvent);
}
