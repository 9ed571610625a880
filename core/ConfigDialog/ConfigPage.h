// A page of the settings' dialog.
#pragma once

#include "core/Platform/Dialogs.h"
#include "core/Platform/Menu.h"

#include <boost/noncopyable.hpp>

#include <functional>
#include <vector>

class CIniConfig;
class CShortcuts;
struct TGlobalSwitches;
struct TPenCurve;
struct TPlatform;

/// The services and settings that the pages show and change; they must outlive the dialog.
struct TConfigOutside {
    const TPlatform& platform;
    CIniConfig& settings;
    TGlobalSwitches& switches;
    CShortcuts& shortcuts;
    TPenCurve& curve;
    IWindow* pOwner = nullptr;        ///< of the pages' own boxes and file dialogs
    std::vector<TMenuItem> vCommands; ///< all that can have a key, in popups
};

class CConfigPage : boost::noncopyable {
public:
    /// Ids of a page's controls begin at a multiple of this.
    static constexpr int IDS = 100;

    explicit CConfigPage(const TConfigOutside& outside) : m_outside(outside) {}
    virtual ~CConfigPage() = default;

    /// The controls, the Page itself first.
    virtual std::vector<TPanelControl> MakeControls() = 0;
    /// Called when the controls stand in the dialog, where `fnFind` finds them.
    void Open(std::function<TPanelControl&(int)> fnFind) {
        m_fnFind = std::move(fnFind);
        OnOpen();
    }
    /// The user changed a control of the page.
    virtual void OnControl(TPanelControl&) {}
    virtual void OnFold(int, bool) {}
    virtual void OnPointer(EMessage, CPoint) {}
    virtual void OnPen(const TPenReport&) {}
    /// False for a value that cannot be: the page has told the user and put it back.
    virtual bool Check() { return true; }
    /// Writes the settings and makes them effective.
    virtual void Apply() = 0;

protected:
    virtual void OnOpen() {}
    const TConfigOutside& GetOutside() const { return m_outside; }
    TPanelControl& Find(int nId) const { return m_fnFind(nId); }

private:
    const TConfigOutside& m_outside;
    std::function<TPanelControl&(int)> m_fnFind;
};
