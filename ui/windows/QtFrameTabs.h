// The tabs of maximised canvas windows.
#pragma once

#include <QTabBar>

#include <vector>

class CQtCanvasWindow;

/// One tab for each canvas window, visible while the active one is maximised.
class CQtFrameTabs : public QTabBar {
public:
    explicit CQtFrameTabs(QWidget* pParent);
    /// Shows these windows with their titles and marks; `pActive` may be null.
    void ShowFrames(const std::vector<CQtCanvasWindow*>& vFrames, const CQtCanvasWindow* pActive);

protected:
    /// The middle button closes a tab's window.
    void mouseReleaseEvent(QMouseEvent* pEvent) override;

private:
    void CloseAt(int nTab);

    std::vector<CQtCanvasWindow*> m_vFrames; ///< in the order of the tabs
};
