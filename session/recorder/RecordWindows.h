// Windows of a recorded session: the platform's own, with the messages to their clients observed.
#pragma once

#include "core/Platform/Panel.h"
#include "session/seam/ControlAct.h"

#include <boost/noncopyable.hpp>

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

class CRecordWindows : public IWindowFactory, boost::noncopyable {
public:
    /// `fnBegin` is called before the main window is created, `fnHear` with every message of a main or
    /// canvas window before its client gets it.
    CRecordWindows(IWindowFactory& windows, std::function<void()> fnBegin,
                   std::function<void(const TMessage&)> fnHear);
    ~CRecordWindows() override;

    IMainWindow* CreateMainWindow(IWindowClient& client, const TMainWindowSetup& setup) override;
    ICanvasWindow* CreateCanvasWindow(IMainWindow& parent, IWindowClient& client,
                                      const TCanvasWindowSetup& setup) override;
    IPanelWindow* CreatePanelWindow(IMainWindow& parent, IWindowClient& client,
                                    const TPanelSetup& setup) override;

    /// The size at which a panel's view was last painted, empty if it never was.
    CSize GetViewSize(const IWindow* pPanel, int nView) const;

private:
    class CClient;

    IWindowClient& Listen(IWindowClient& client);

    IWindowFactory& m_windows;
    std::function<void()> m_fnBegin;
    std::function<void(const TMessage&)> m_fnHear;
    std::vector<std::unique_ptr<CClient>> m_vClients;
    std::map<std::pair<const IWindow*, int>, std::unique_ptr<CSizedView>> m_mapViews;
};
