// The base of all panels: the window, its saved placement, the dispatch of the window's messages to the
// controls.
#pragma once

#include "core/Platform/Panel.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <string>
#include <vector>

class CCanvasFrame;
class CCommandTable;
class CIniConfig;
class CIniConfigData;
class CShortcuts;
class CTools;
struct TGlobalSwitches;
struct TPlatform;

/// The application's services for panels; the objects must outlive them.
struct TPanelOutside {
    const TPlatform& platform;
    CIniConfig& settings;
    TGlobalSwitches& switches;
    const CCommandTable& commands;                ///< whose states are those of the panels' buttons
    const CShortcuts& shortcuts;                  ///< named by the tool tips of these buttons
    const boost::weak_ptr<CTools>& wpTool;        ///< the active tool
    const boost::weak_ptr<CCanvasFrame>& wpFrame; ///< the active frame
};

class CPanel : public IWindowClient, public CControlModel, boost::noncopyable {
public:
    /// `strName` is the panel's section below "Windows".
    CPanel(std::wstring strName, const TPanelOutside& outside)
        : m_strName(std::move(strName)), m_outside(outside) {}

    /// Creates the window at its saved placement, or at `placeFirst` without one. Docked panels are ordered
    /// as they are created. Raises internal_error when the window system refuses.
    void Create(IMainWindow& parent, const TPanelPlace& placeFirst);
    /// The saved placement.
    TPanelPlace ReadPlace(const TPanelPlace& placeFirst) const;
    /// Writes the placement to the settings, if it has changed.
    void KeepPlace();
    /// Writes the panel's own settings, if they have changed.
    void KeepSettings();
    /// Writes the settings and destroys the window.
    void Close();
    IPanelWindow* GetWindow() const { return m_pWindow; }

    virtual std::wstring GetTitle() const = 0;
    /// False while the active tool makes no use of the panel: one that it does comes in front of its tab.
    virtual bool IsUsed() const { return true; }
    /// Updates what the panel shows.
    void Refresh();
    /// Called when the active tool begins a stroke.
    virtual void OnStroke() {}
    /// Called when no message waits; returns true when there is more to do, and is called again. Updates the
    /// buttons that execute commands.
    bool DoIdleWork();

    bool OnMessage(const TMessage& msg) override;
    void OnPaint(IPaintTarget&, const CRect&) override {}
    void OnFinalMessage() override { m_pWindow = nullptr; }

protected:
    /// Updates the controls' values.
    virtual void OnRefresh() = 0;
    /// The panel reads its own settings.
    virtual void OnOpen() {}
    /// Writes those of the panel's own settings that have changed since they were read or written.
    virtual void OnKeep() {}
    /// A short piece of the panel's own idle work; true when there is more.
    virtual bool OnIdle() { return false; }
    bool IsCommandEnabled(int nCommand) const;
    /// Shows a context menu at the pointer with the present states of its commands.
    void ShowMenu(std::vector<TMenuItem> vMenu);

    const TPanelOutside& GetOutside() const { return m_outside; }
    /// The active tool, null when there is none.
    boost::shared_ptr<CTools> GetTool() const;
    /// The active frame, null when there is none.
    boost::shared_ptr<CCanvasFrame> GetFrame() const;
    void EnableAll(bool bEnable);
    /// Notifies all panels that a tool's value has changed, and redraws the tool's overlay.
    static void NotifyTool();

private:
    boost::shared_ptr<CIniConfigData> OpenSection() const;
    /// Sets the states of buttons that execute commands; true when one has changed.
    bool UpdateCommands();

    const std::wstring m_strName;
    const TPanelOutside& m_outside;
    IPanelWindow* m_pWindow = nullptr;
    TPanelPlace m_placeRead;
};
