// A panel: a dock of the main window, or a window of its own over it.
#pragma once

#include "ui/panels/QtPanelControls.h"
#include "ui/windows/QtWindow.h"

#include <QDockWidget>

#include <memory>
#include <vector>

class CQtMainWindow;
class CQtPanelDocks;
class QVBoxLayout;

class CQtPanel : public CQtWindow<QDockWidget, IPanelWindow> {
public:
    CQtPanel(CQtPanelDocks& docks, IWindowClient& client, const TPanelSetup& setup);
    ~CQtPanel() override;

    void SetTitle(const std::wstring& strTitle) override;
    CRect GetRect() const override { return GetPlace().rc; }
    TPanelPlace GetPlace() const override;
    void SetPlace(const TPanelPlace& place) override;
    bool IsShown() const override { return !isHidden(); }
    void ShowPanel(bool bShow) override;
    void SetControls(const std::vector<TPanelControl>& vControls) override;
    void ShowMenu(const std::vector<TMenuItem>& vMenu) override;

    /// True when the panel was last put there.
    bool HasPlace(const TPanelPlace& place) const {
        return m_place.dock == place.dock && m_place.rc == place.rc;
    }

    /// True when it was last put in front of its tabs.
    bool WasInFront() const { return m_place.bShow && m_place.bFront; }

    QSize sizeHint() const override;
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

protected:
    void OnLeave() override;
    void OnShow() override { ShowPanel(true); }
    bool HidesOnClose() const override { return true; }
    bool event(QEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    /// The widgets of one line, and the label in front of them.
    struct TLine {
        QWidget* pLabel = nullptr;
        std::vector<size_t> vControls;
    };

    TPanelEvents MakeEvents();
    /// True when one of the controls makes use of any height.
    bool Fill(QWidget& content, const std::vector<TPanelControl>& vControls);
    void WatchControls(QWidget& content);
    QRect GetScreenRect() const;
    void PutOverCanvases();
    void GiveKeyboardBack();
    void FocusPicture();

    CQtPanelDocks& m_docks;
    CQtMainWindow& m_main;
    std::vector<std::unique_ptr<CQtPanelControl>> m_vControls;
    std::vector<TLine> m_vLines;
    bool m_bGrows = true; ///< has a list, which makes use of any height
    TPanelPlace m_place;  ///< as it was set
};
