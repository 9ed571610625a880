// A canvas frame's window in a session that a script plays.
#pragma once

#include "session/seam/Glass.h"
#include "session/seam/SessionWindow.h"

#include <map>
#include <optional>

class CSessionMainWindow;
class IClock;

/// The whole window is client area. It paints into memory, and its timers follow the session's clock.
class CSessionCanvasWindow : public CSessionWindow<ICanvasWindow> {
public:
    /// State of a scroll bar.
    struct TScroll {
        CSize szExtent, szLine, szPage;
        CPoint ptOffset;
    };

    CSessionCanvasWindow(CSessionMainWindow& main, IMessageQueue& queue, IClock& clock, IWindowClient& client,
                         const TCanvasWindowSetup& setup, const CRect& rc);

    void Destroy() override;
    void Show() override;
    /// Sends Size at once when the size changes. Sides are at least 1.
    void SetRect(const CRect& rc) override;
    void Invalidate(const CRect& rc) override;

    void SetModified(bool bModified) override;
    CSize GetClientSize() const override { return m_rc.Size(); }
    void SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset) override;
    void SetTimer(int nId, int nMilliseconds) override;
    void KillTimer(int nId) override { m_mapTimers.erase(nId); }
    /// Only noted: a script's positions depend on the window's size.
    bool IsMaximized() const override { return m_bMaximized; }
    void SetMaximized(bool bMaximized) override { m_bMaximized = bMaximized; }
    void FitTo(CSize) override {}
    void Activate() override;
    void SetFocus() override {}
    void SetCapture(bool bCapture) override { m_bCapture = bCapture; }
    bool HasCapture() const override { return m_bCapture; }
    void SetCursor(ECursor cursor) override;
    /// The MDI client is the screen.
    CPoint GetClientOrigin() const override { return m_rc.TopLeft(); }
    int32_t GetDpi() const override { return 96; }
    bool IsAt(CPoint ptScreen) const override {
        return !m_bCovered && !m_rc.Intersect(CRect(ptScreen, CSize{1, 1})).IsEmpty();
    }
    ECursor GetCursor() const { return m_cursor; }
    /// Marks the whole window as covered by another one.
    void SetCovered(bool bCovered) { m_bCovered = bCovered; }

    /// True while the title is marked.
    bool IsModified() const { return m_bModified; }
    const TScroll& GetScroll() const { return m_scroll; }
    const CGlass& GetGlass() const { return m_glass; }
    /// Creates a real window that shows this one.
    void ShowIn(const std::function<ICanvasWindow*(IWindowClient&)>& fnCreate);
    /// Makes the client paint the invalidated area.
    void Paint();
    /// Posts Timer for every timer that is due. Called while the queue is empty, so that each timer has at
    /// most one message; periods that were missed are skipped.
    void PostTimers();
    /// Milliseconds until the next timer is due, nullopt without timers.
    std::optional<uint32_t> UntilTimer() const;

private:
    struct TTimer {
        uint32_t uPeriod;
        uint32_t uDue;
    };

    /// Resizes the real window's client area to this size.
    void SizeShown();

    CSessionMainWindow& m_main;
    IClock& m_clock;
    CGlass m_glass;
    CRect m_rcInvalid;
    bool m_bCapture = false;
    bool m_bCovered = false;
    bool m_bMaximized = false;
    ECursor m_cursor = ECursor::Arrow;
    bool m_bModified = false;
    TScroll m_scroll;
    std::map<int, TTimer> m_mapTimers;
};
