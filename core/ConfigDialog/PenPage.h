// The page that shows what the pen reports and fits the pressures to the user's hand.
#pragma once

#include "core/ConfigDialog/ConfigPage.h"
#include "core/ConfigDialog/PenViews.h"

#include <optional>

class CPenPage : public CConfigPage {
public:
    explicit CPenPage(const TConfigOutside& outside);

    std::vector<TPanelControl> MakeControls() override;
    void OnControl(TPanelControl& control) override;
    /// The mouse draws with full pressure, unless a pen has just been reported. It tells nothing about the
    /// hand.
    void OnPointer(EMessage id, CPoint pt) override;
    void OnPen(const TPenReport& report) override;
    void Apply() override;

protected:
    void OnOpen() override { Show(); }

private:
    void Begin();
    void Collect(const TPenReport& report);
    void End();
    void SaveTrace();
    std::wstring DescribeDevice() const;
    std::wstring DescribeLast() const;
    void Show();

    CPressRange m_range;
    CPenTrace m_trace;
    CPressHistogram m_histogram;
    TPenCurve m_fitted; ///< the curve on offer
    TPenCurve m_shown;  ///< that one where it is taken, else the straight one
    bool m_bCollecting = false;
    std::optional<uint32_t> m_uPenTick; ///< the clock's time at the pen's last report
    uint32_t m_uStart = 0;              ///< time of the first pressure that was collected
    std::wstring m_strStatus;
    CPenTraceView m_viewTrace;
    CPressHistogramView m_viewHistogram{m_histogram, m_shown};
};
