// The main frame's window in a session that a script plays.
#pragma once

#include "session/seam/SessionWindow.h"

#include <functional>
#include <map>
#include <utility>
#include <vector>

class CSessionCanvasWindow;

/// State of the commands as last set; a real window's may follow.
class CCommandLooks : public ICommandLook {
public:
    using TGetShown = std::function<ICommandLook*()>; ///< returns null for none
    explicit CCommandLooks(TGetShown fnGetShown) : m_fnGetShown(std::move(fnGetShown)) {}

    struct TLook {
        bool bEnabled = false;
        bool bChecked = false;
    };

    void SetState(int nId, bool bEnabled, bool bChecked) override {
        m_mapLooks[nId] = {bEnabled, bChecked};
        if (ICommandLook* pShown = m_fnGetShown()) pShown->SetState(nId, bEnabled, bChecked);
    }
    /// The look of a command, null when it was never set.
    const TLook* Find(int nId) const {
        const auto it = m_mapLooks.find(nId);
        return it == m_mapLooks.end() ? nullptr : &it->second;
    }

private:
    std::map<int, TLook> m_mapLooks;
    const TGetShown m_fnGetShown;
};

class CSessionMainWindow : public CSessionWindow<IMainWindow> {
public:
    CSessionMainWindow(IMessageQueue& queue, IWindowClient& client, const TMainWindowSetup& setup);

    void Destroy() override;
    void Show() override;
    void SetRect(const CRect& rc) override;
    void Invalidate(const CRect&) override {}

    ICommandLook& GetMenuLook() override { return m_menuLooks; }
    ICommandLook& GetToolBarLook() override { return m_toolBarLooks; }
    void SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts) override;
    void SetCommandTexts(const std::vector<TMenuItem>& vMenu) override;
    void SetStatusText(int nPane, const std::wstring& strText) override;
    void SetZoomItems(const std::vector<std::wstring>& vItems) override;
    void SelectZoomItem(int nItem) override;
    int GetZoomItem() const override { return m_nZoomItem; }
    void ArrangeChildren(EArrange arrange) override;
    /// One screen of 1920 by 1080.
    std::vector<CRect> GetScreens() const override;
    void SetMinimumSize(CSize sz) override { m_szMinimum = sz; }
    bool IsMaximized() const override { return m_bMaximized; }
    void SetMaximized(bool bMaximized) override { m_bMaximized = bMaximized; }
    CSize GetArea() const override { return {}; }
    void SetTheme(ETheme theme) override { m_theme = theme; }
    ETheme GetTheme() const { return m_theme; }

    /// Creates a real window that shows this one.
    void ShowIn(const std::function<IMainWindow*(IWindowClient&)>& fnCreate);

    const CCommandLooks& GetToolBarLooks() const { return m_toolBarLooks; }
    const std::vector<std::wstring>& GetRecentFiles() const { return m_vRecent; }
    const std::vector<std::wstring>& GetZoomItems() const { return m_vZoomItems; }
    /// Text of status pane 0, 1 or 2.
    const std::wstring& GetStatusText(int nPane) const { return m_astrStatus[nPane]; }

    void AddChild(CSessionCanvasWindow& child) { m_vChildren.push_back(&child); }
    /// Removes a child that is being destroyed; the one used before it becomes active.
    void RemoveChild(CSessionCanvasWindow& child);
    /// Activates a child, or none, and notifies both by MdiActivate.
    void SetActiveChild(CSessionCanvasWindow* pChild);
    CSessionCanvasWindow* GetActiveChild() const { return m_pActive; }
    /// In the order of their creation.
    const std::vector<CSessionCanvasWindow*>& GetChildren() const { return m_vChildren; }

private:
    CCommandLooks m_menuLooks{[this] { return m_shown.Get() ? &m_shown.Get()->GetMenuLook() : nullptr; }};
    CCommandLooks m_toolBarLooks{
        [this] { return m_shown.Get() ? &m_shown.Get()->GetToolBarLook() : nullptr; }};
    std::vector<std::wstring> m_vRecent;
    std::vector<std::wstring> m_vZoomItems;
    int m_nZoomItem = -1;
    std::wstring m_astrStatus[3];
    CSize m_szMinimum;
    bool m_bMaximized = false;
    ETheme m_theme = ETheme::System;
    std::vector<CSessionCanvasWindow*> m_vChildren;
    std::vector<CSessionCanvasWindow*> m_vUsed; ///< activated children, the last one last
    CSessionCanvasWindow* m_pActive = nullptr;
};
