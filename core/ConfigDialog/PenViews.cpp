#include "core/ConfigDialog/PenViews.h"

#include "core/AppModule/ErrorBox.h"
#include "core/PanelViews/PanelDraw.h"

#include <algorithm>

namespace {

constexpr TColor PAPER = 0xFFFFFF, EDGE = MakeColor(0x90, 0x90, 0x90), INK = MakeColor(0x20, 0x20, 0x20);
constexpr TColor HOVER = MakeColor(0xB8, 0xB8, 0xB8), BAR = MakeColor(0x9D, 0xBF, 0xDD);
constexpr TColor CURVE = MakeColor(0x2E, 0x7D, 0xC8);
constexpr double WIDEST = 12; ///< pixels of the strongest pressure
constexpr double HOVER_RADIUS = 1;

void PaintPaper(IPaintTarget& target, const TPanelPaint& paint, const auto& fnDraw) {
    Guarded([&] {
        const CRect rc({0, 0}, paint.sz);
        CGDIBuffer buffer(paint.sz);
        FillColor(buffer, rc, PAPER);
        fnDraw(buffer);
        FrameColor(buffer, rc, EDGE);
        target.Blit(buffer.GetPixelPtr({0, 0}), buffer.GetStride(), paint.sz, rc);
    });
}

} // namespace

void CPenTraceView::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    m_size = paint.sz;
    PaintPaper(target, paint, [this](CGDIBuffer& buffer) {
        const CPressRange range(m_pen.GetPressureAxis());
        const double dUnits = std::max(1, m_pen.GetUnitsPerPixel());
        TDrawPoint ptLast;
        double dLast = 0; // width, 0 above the tablet
        for (const TPenReport& report : m_trace.GetReports()) {
            const TDrawPoint pt{report.packet.x / dUnits, report.packet.y / dUnits};
            const uint32_t uPressure = m_curve.Apply(range.Above(report.packet.uPressure), range.GetRange());
            const double dWidth = WIDEST * uPressure / range.GetRange();
            if (dWidth > 0 && dLast > 0)
                DrawLine(buffer, ptLast, pt, std::max(1.0, (dWidth + dLast) / 2), INK);
            else if (dWidth > 0 || dLast == 0)
                DrawDisc(buffer, pt, std::max(HOVER_RADIUS, dWidth / 2), 0, dWidth > 0 ? INK : HOVER);
            ptLast = pt;
            dLast = dWidth;
        }
    });
}

void CPressHistogramView::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    PaintPaper(target, paint, [&](CGDIBuffer& buffer) {
        const auto& aBins = m_histogram.GetBins();
        const uint32_t uMost = std::max(1u, *std::ranges::max_element(aBins));
        const int32_t nWidth = paint.sz.cx, nHeight = paint.sz.cy;
        const auto at = [&](size_t nBin) {
            return static_cast<int32_t>(nBin * static_cast<size_t>(nWidth) / aBins.size());
        };
        for (size_t n = 0; n < aBins.size(); ++n) {
            const auto nBar =
                static_cast<int32_t>(uint64_t{aBins[n]} * static_cast<uint64_t>(nHeight) / uMost);
            FillColor(buffer, {at(n), nHeight - nBar, std::max(at(n) + 1, at(n + 1)), nHeight}, BAR);
        }
        const auto uRange = static_cast<uint32_t>(nWidth);
        const auto height = [&](uint32_t x) {
            return nHeight - 1.0 * nHeight * m_curve.Apply(x * 64, uRange * 64) / (uRange * 64);
        };
        for (uint32_t x = 1; x <= uRange; ++x)
            DrawLine(buffer, {x - 1.0, height(x - 1)}, {1.0 * x, height(x)}, 1.6, CURVE);
    });
}
