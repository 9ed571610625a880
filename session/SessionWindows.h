// The windows of a session that a script plays: the same messages in the same order as from real ones, kept
// pixels instead of a glass.
#pragma once

#include "session/SessionCanvasWindow.h"
#include "session/SessionMainWindow.h"
#include "session/SessionPanelWindow.h"

#include <memory>
#include <optional>
#include <vector>

/// Makes and keeps the windows of a session: one main window at a time and its canvas windows. Real windows
/// may show them; what the application is told does not depend on that.
class CSessionWindows : public IWindowFactory, boost::noncopyable {
public:
    /// `pShown` makes the real windows; null for none.
    CSessionWindows(IMessageQueue& queue, IClock& clock, IWindowFactory* pShown = nullptr)
        : m_queue(queue), m_clock(clock), m_pShown(pShown) {}
    ~CSessionWindows() override;

    /// Null while there is a main window, and when the real window system refuses.
    IMainWindow* CreateMainWindow(IWindowClient& client, const TMainWindowSetup& setup) override;
    /// A client area of 1000 by 700. Null when `parent` has been destroyed or is of another factory.
    ICanvasWindow* CreateCanvasWindow(IMainWindow& parent, IWindowClient& client,
                                      const TCanvasWindowSetup& setup) override;
    IPanelWindow* CreatePanelWindow(IMainWindow& parent, IWindowClient& client,
                                    const TPanelSetup& setup) override;

    /// The main window, null while there is none.
    CSessionMainWindow* GetMain() const;
    /// The active canvas window, null for none.
    CSessionCanvasWindow* GetActive() const;

    /// Frees windows that have been destroyed; only while none of them is at work.
    void FreeDead();
    /// Has every canvas window paint what was invalidated.
    void Paint();
    /// Posts the timers that are due; only while no message waits.
    void PostTimers();
    /// Milliseconds until a timer is due, nullopt when there is none.
    std::optional<uint32_t> UntilTimer() const;
    /// Saves the active canvas window's glass. False without one or when that fails.
    bool SavePicture(const std::wstring& strPath, IImageCodecs& codecs) const;

private:
    IMessageQueue& m_queue;
    IClock& m_clock;
    IWindowFactory* m_pShown;
    std::vector<std::unique_ptr<CSessionMainWindow>> m_vMain; ///< living ones last
    std::vector<std::unique_ptr<CSessionCanvasWindow>> m_vCanvas;
    std::vector<std::unique_ptr<CSessionPanelWindow>> m_vPanels;
};
