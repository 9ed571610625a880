// The main frame's window. Positions on the screen are device-independent pixels, as Qt places windows.
#pragma once

#include "core/Platform/Panel.h"
#include "ui/QtMenu.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>
#include <vector>

class CQtCanvasWindow;
class CQtEventPump;
class CQtKeyFilter;
class CQtPanel;
class CQtPen;
class CQtToolBar;
class QLabel;
class QMdiArea;

class CQtMainWindow : public QMainWindow, public IMainWindow {
public:
    CQtMainWindow(IWindowClient& client, const TMainWindowSetup& setup, CQtEventPump& pump,
                  CQtKeyFilter& keys, CQtPen& pen);
    ~CQtMainWindow() override;

    IWindowClient& GetClient() override { return *m_pClient; }
    void DefaultMessage(const TMessage& msg) override;
    void Destroy() override;
    void SetTitle(const std::wstring& strTitle) override;
    void Show() override;
    /// The frame's position and the size inside it: what the window manager puts around is not known before
    /// the window shows, and reading and writing must stay a pair. The unmaximised place while maximised.
    CRect GetRect() const override;
    void SetRect(const CRect& rc) override;
    void Invalidate(const CRect& rc) override;

    ICommandLook& GetMenuLook() override { return m_menuLook; }
    ICommandLook& GetToolBarLook() override;
    void SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts) override;
    void SetStatusText(int nPane, const std::wstring& strText) override;
    void SetZoomItems(const std::vector<std::wstring>& vItems) override;
    void SelectZoomItem(int nItem) override;
    int GetZoomItem() const override;
    void ArrangeChildren(EArrange arrange) override;
    std::vector<CRect> GetScreens() const override;
    void SetMinimumSize(CSize sz) override;

    QMdiArea& GetMdiArea() { return *m_pMdiArea; }
    CQtEventPump& GetPump() { return m_pump; }
    CQtKeyFilter& GetKeys() { return m_keys; }
    CQtPen& GetPen() { return m_pen; }
    CQtCanvasWindow* GetActiveChild() const { return m_pActive; }
    /// True once Destroy has begun: nothing may be made in the window any more.
    bool IsDestroyed() const { return m_bDestroyed; }

    /// A child's menus, known to the state rules and the recent files; they live as long as the child.
    std::unique_ptr<CQtMenuSet> MakeMenus(const std::vector<TMenuItem>& vMenu);
    void AddChild(CQtCanvasWindow* pChild);
    /// Takes a child that is going away out of the list; the one used before it becomes active.
    void RemoveChild(CQtCanvasWindow* pChild);
    /// Makes a child, or none, the active one: menus, and MdiActivate to both.
    void SetActiveChild(CQtCanvasWindow* pChild);
    /// Marks the frame's title when it shows that of a maximised child that is marked.
    void UpdateMark();

    void AddPanel(CQtPanel* pPanel) { m_vPanels.push_back(pPanel); }
    void RemovePanel(CQtPanel* pPanel) { std::erase(m_vPanels, pPanel); }
    /// A docked panel other than `pExcept` that was given the same place, null when there is none.
    CQtPanel* FindPanelAt(const TPanelPlace& place, const CQtPanel* pExcept) const;

    /// Gives the keyboard to the next widget in the order of Tab, or the one before.
    bool MoveFocus(bool bNext) { return focusNextPrevChild(bNext); }

    /// No menu to hide the tool bar by.
    QMenu* createPopupMenu() override { return nullptr; }

protected:
    bool event(QEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

private:
    /// States go to the menus that show.
    struct CMenuLook : ICommandLook {
        explicit CMenuLook(CQtMainWindow& window) : m_window(window) {}
        void SetState(int nId, bool bEnabled, bool bChecked) override;
        CQtMainWindow& m_window;
    };

    void MakeStatusBar();
    void PlaceAtFirst();
    void SizePanels();
    void ListWindows(QMenu& menu);
    CQtMenuSet& GetShownMenus();
    void PostCommand(int nId, int nParameter);

    IWindowClient* m_pClient;
    CQtEventPump& m_pump;
    CQtKeyFilter& m_keys;
    CQtPen& m_pen;
    CMenuLook m_menuLook{*this};
    std::unique_ptr<CQtMenuSet> m_pMenus;
    CQtToolBar* m_pToolBar;
    QMdiArea* m_pMdiArea;
    QLabel* m_apStatus[2];
    std::vector<QPointer<QAction>> m_vWindowActions; ///< in the menu listed last, which goes with its child
    std::vector<CQtCanvasWindow*> m_vChildren;       ///< in the order of their making
    CQtCanvasWindow* m_pActive = nullptr;
    std::vector<CQtPanel*> m_vPanels;
    int m_nFirstRecentId = 0;
    std::vector<std::wstring> m_vRecent;
    bool m_bShown = false; ///< Show has been called
    bool m_bDestroyed = false;
};
