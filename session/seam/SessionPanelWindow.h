// A panel in a session that a script plays.
#pragma once

#include "core/Platform/Panel.h"
#include "session/seam/ControlAct.h"
#include "session/seam/SessionWindow.h"

class CSessionPanelWindow : public CSessionWindow<IPanelWindow> {
public:
    CSessionPanelWindow(IMessageQueue& queue, IWindowClient& client, const TPanelSetup& setup)
        : CSessionWindow(queue, client, setup.strTitle, {}, {}), m_vViews(setup.vControls),
          m_vControls(setup.vControls) {}

    void Destroy() override;
    void Show() override { ShowPanel(true); }
    void SetRect(const CRect& rc) override { m_place.rc = rc; }
    CRect GetRect() const override { return m_place.rc; }
    void Invalidate(const CRect&) override {}
    TPanelPlace GetPlace() const override { return m_place; }
    void SetPlace(const TPanelPlace& place) override;
    bool IsShown() const override { return m_place.bShow; }
    void ShowPanel(bool bShow) override;
    void SetControls(const std::vector<TPanelControl>& vControls) override;
    void ShowMenu(const std::vector<TMenuItem>&) override {}

    /// Has a view paint itself in that size, as it would on a glass; nothing for an id without a view.
    void PaintView(int nId, CSize sz) { ::PaintView(m_vViews, nId, sz); }
    /// The controls as they would be seen.
    const std::vector<TPanelControl>& GetControls() const { return m_vControls; }

private:
    TPanelPlace m_place;
    const std::vector<TPanelControl> m_vViews; ///< as the window was created
    std::vector<TPanelControl> m_vControls;
};
