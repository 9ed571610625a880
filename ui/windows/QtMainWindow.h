// The main frame's window. Positions on the screen are device-independent pixels, as Qt places windows.
#pragma once

#include "ui/windows/QtMenu.h"
#include "ui/windows/QtWindow.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class CQtCanvasWindow;
class CQtFrameTabs;
class CQtPen;
class CQtTheme;
class CQtToolBar;
class QLabel;
class QMdiArea;

class CQtMainWindow : public CQtWindow<QMainWindow, IMainWindow> {
public:
    CQtMainWindow(IWindowClient& client, const TMainWindowSetup& setup, CQtEventPump& pump,
                  CQtKeyFilter& keys, CQtPen& pen);
    ~CQtMainWindow() override;

    void SetTitle(const std::wstring& strTitle) override;
    /// The frame's position and its inner size: the decorations are unknown before the window shows, and
    /// the value must survive a round trip. While maximised, the place to restore.
    CRect GetRect() const override;
    void SetRect(const CRect& rc) override;

    ICommandLook& GetMenuLook() override { return m_menuLook; }
    ICommandLook& GetToolBarLook() override;
    void SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts) override;
    void SetCommandTexts(const std::vector<TMenuItem>& vMenu) override;
    void SetStatusText(int nPane, const std::wstring& strText) override;
    void SetZoomItems(const std::vector<std::wstring>& vItems) override;
    void SelectZoomItem(int nItem) override;
    int GetZoomItem() const override;
    void ArrangeChildren(EArrange arrange) override;
    std::vector<CRect> GetScreens() const override;
    void SetMinimumSize(CSize sz) override;
    bool IsMaximized() const override { return isMaximized(); }
    void SetMaximized(bool bMaximized) override;
    CSize GetArea() const override;
    void SetTheme(ETheme theme) override;

    QMdiArea& GetMdiArea() { return *m_pMdiArea; }
    CQtKeyFilter& GetKeys() { return m_keys; }
    CQtPen& GetPen() { return m_pen; }
    CQtCanvasWindow* GetActiveChild() const { return m_pActive; }
    /// Gives the active canvas the keyboard.
    void FocusPicture();

    /// Creates a child's menus, included in state updates and recent files; they live as long as the child.
    std::unique_ptr<CQtMenuSet> MakeMenus(const std::vector<TMenuItem>& vMenu);
    void AddChild(CQtCanvasWindow* pChild);
    /// Removes a child that is being destroyed; the one used before it becomes active.
    void RemoveChild(CQtCanvasWindow* pChild);
    /// Activates a child, or none: switches the menus and sends MdiActivate to both.
    void SetActiveChild(CQtCanvasWindow* pChild);
    /// Shows the children's titles and marks in the tabs of maximised ones.
    void UpdateTabs();

    /// `fnShown` is called once, when the window is shown for the first time, `fnScreens` when the screens or
    /// their scale have changed.
    void SetPanelEvents(std::function<void()> fnShown, std::function<void()> fnScreens) {
        m_fnFirstShown = std::move(fnShown);
        m_fnScreens = std::move(fnScreens);
    }

    /// Moves the focus to the next widget in Tab order, or the previous one.
    bool MoveFocus(bool bNext) { return focusNextPrevChild(bNext); }

    /// No context menu to hide the tool bar.
    QMenu* createPopupMenu() override { return nullptr; }

protected:
    void OnLeave() override;
    void OnShow() override;
    bool event(QEvent* pEvent) override;
    bool nativeEvent(const QByteArray& type, void* pMessage, qintptr* pnResult) override;
    void changeEvent(QEvent* pEvent) override;
    void moveEvent(QMoveEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

private:
    /// Sets the states in the menus that are shown.
    struct CMenuLook : ICommandLook {
        explicit CMenuLook(CQtMainWindow& window) : m_window(window) {}
        void SetState(int nId, bool bEnabled, bool bChecked) override;
        CQtMainWindow& m_window;
    };

    void MakeStatusBar();
    void PlaceAtFirst();
    void WatchScreens();
    void FitScreen();
    bool IsNormal() const;
    /// The place of a window of normal size; its position is the last known one if the desktop tells none.
    QRect GetPresentPlace() const;
    void KeepPlace();
    void ListWindows(QMenu& menu);
    CQtMenuSet& GetShownMenus();
    IWindow* GetReceiver();
    void LeaveInput();

    CQtKeyFilter& m_keys;
    CQtPen& m_pen;
    CMenuLook m_menuLook{*this};
    std::unique_ptr<CQtMenuSet> m_pMenus;
    CQtToolBar* m_pToolBar;
    CQtFrameTabs* m_pTabs;
    QMdiArea* m_pMdiArea;
    std::unique_ptr<CQtTheme> m_pTheme; ///< null in a host's application
    QString m_strTitle;
    QSize m_szMinimum;
    QRect m_rcPlace;      ///< the place to restore from minimised and maximised
    QTimer m_timerPlace;  ///< after which the window has been moved
    QTimer m_timerScreen; ///< after which the window is to fit its screen
    QLabel* m_apStatus[3];
    std::vector<QPointer<QAction>> m_vWindowActions; ///< of the menu listed last, deleted with its child
    std::vector<CQtCanvasWindow*> m_vChildren;       ///< in the order of their creation
    CQtCanvasWindow* m_pActive = nullptr;
    int m_nFirstRecentId = 0;
    std::vector<std::wstring> m_vRecent;
    std::function<void()> m_fnFirstShown, m_fnScreens;
};
