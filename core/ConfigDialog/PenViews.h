// The parts of the pen's page that paint themselves.
#pragma once

#include "core/ConfigDialog/PenTrace.h"
#include "core/Tools/PenCurve.h"

#include <boost/noncopyable.hpp>

/// The last events as a line, as wide as the pressure is strong; those above the tablet as dots.
class CPenTraceView : public IPanelView, boost::noncopyable {
public:
    /// All outlive the view; `curve` is the one that is shown.
    CPenTraceView(const CPenTrace& trace, IPen& pen, const TPenCurve& curve)
        : m_trace(trace), m_pen(pen), m_curve(curve) {}
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;
    /// The size at the last paint.
    CSize GetSize() const { return m_size; }

private:
    const CPenTrace& m_trace;
    IPen& m_pen;
    const TPenCurve& m_curve;
    CSize m_size;
};

/// How often each pressure came, light ones at the left, and the curve over them.
class CPressHistogramView : public IPanelView, boost::noncopyable {
public:
    CPressHistogramView(const CPressHistogram& histogram, const TPenCurve& curve)
        : m_histogram(histogram), m_curve(curve) {}
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;

private:
    const CPressHistogram& m_histogram;
    const TPenCurve& m_curve;
};
