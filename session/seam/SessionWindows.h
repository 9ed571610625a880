// The windows of a session that a script plays: they send the same messages in the same order as real ones
// and paint into memory.
#pragma once

#include "session/seam/SessionCanvasWindow.h"
#include "session/seam/SessionMainWindow.h"
#include "session/seam/SessionPanelWindow.h"

#include <memory>
#include <optional>
#include <vector>

/// Creates and owns the windows of a session: one main window at a time and its canvas windows. Real
/// windows may show them; the application's messages do not depend on that.
class CSessionWindows : public IWindowFactory, boost::noncopyable {
public:
    /// `pShown` creates the real windows; null for none.
    CSessionWindows(IMessageQueue& queue, IClock& clock, IWindowFactory* pShown = nullptr)
        : m_queue(queue), m_clock(clock), m_pShown(pShown) {}
    ~CSessionWindows() override;

    /// Null while there is a main window, or when the real window system refuses.
    IMainWindow* CreateMainWindow(IWindowClient& client, const TMainWindowSetup& setup) override;
    /// A client area of 1000 by 700. Null when `parent` was destroyed or belongs to another factory.
    ICanvasWindow* CreateCanvasWindow(IMainWindow& parent, IWindowClient& client,
                                      const TCanvasWindowSetup& setup) override;
    IPanelWindow* CreatePanelWindow(IMainWindow& parent, IWindowClient& client,
                                    const TPanelSetup& setup) override;

    /// The main window, null while there is none.
    CSessionMainWindow* GetMain() const;
    /// The active canvas window, null for none.
    CSessionCanvasWindow* GetActive() const;

    /// Frees destroyed windows; called only while none of them is in use.
    void FreeDead();
    /// Makes every canvas window paint its invalidated area.
    void Paint();
    /// Posts the timers that are due; called only while the queue is empty.
    void PostTimers();
    /// Milliseconds until a timer is due, nullopt when there is none.
    std::optional<uint32_t> UntilTimer() const;
    /// Saves the active canvas window's pixels. False without one or when that fails.
    bool SavePicture(const std::wstring& strPath, IImageCodecs& codecs) const;

private:
    IMessageQueue& m_queue;
    IClock& m_clock;
    IWindowFactory* m_pShown;
    std::vector<std::unique_ptr<CSessionMainWindow>> m_vMain; ///< the living one is last
    std::vector<std::unique_ptr<CSessionCanvasWindow>> m_vCanvas;
    std::vector<std::unique_ptr<CSessionPanelWindow>> m_vPanels;
};
