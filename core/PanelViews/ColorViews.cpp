#include "core/PanelViews/ColorViews.h"

#include "core/AppModule/ErrorBox.h"
#include "core/PanelViews/PanelDraw.h"
#include "core/Platform/System.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double RING_PART = 0.15; ///< the ring's width as a fraction of the radius
constexpr TColor BLACK = 0, WHITE = 0xFFFFFF, FRAME = MakeColor(0x80, 0x80, 0x80);
constexpr int KEY_STEP = 3;

// A mark that is visible on every colour.
void DrawMark(CGDIBuffer& buffer, TDrawPoint pt, double dScale) {
    DrawDisc(buffer, pt, 6 * dScale, 1.5 * dScale, BLACK);
    DrawDisc(buffer, pt, 5 * dScale, 1.5 * dScale, WHITE);
}

int HueAt(double dX, double dY) {
    return (static_cast<int>(std::lround(std::atan2(-dY, dX) * 180 / PI)) + 360) % 360;
}

void FillFramed(CGDIBuffer& buffer, const CRect& rc, TColor color) {
    FillColor(buffer, rc, FRAME);
    FillColor(buffer, {rc.left + 1, rc.top + 1, rc.right - 1, rc.bottom - 1}, WHITE);
    FillColor(buffer, {rc.left + 2, rc.top + 2, rc.right - 2, rc.bottom - 2}, color);
}

} // namespace

void CPaintedView::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    Guarded([&] {
        m_size = paint.sz;
        const CRect rcAll({0, 0}, paint.sz);
        CGDIBuffer buffer(paint.sz);
        FillColor(buffer, rcAll, paint.clrBack);
        Draw(buffer, paint);
        if (!paint.bEnabled)
            for (int32_t y = 0; y < paint.sz.cy; ++y)
                for (int32_t x = 0; x < paint.sz.cx; ++x) BlendPixel(buffer, {x, y}, paint.clrBack, 0.65);
        if (paint.bFocus) FrameColor(buffer, rcAll, paint.clrText);
        target.Blit(buffer.GetPixelPtr({0, 0}), buffer.GetStride(), paint.sz, rcAll);
    });
}

CColorCircleView::TGeometry CColorCircleView::Measure(CSize sz) {
    const double dOuter = std::max(8.0, std::min(sz.cx, sz.cy) / 2.0 - 3);
    const double dInner = dOuter * (1 - RING_PART);
    const double x = sz.cx / 2.0, y = sz.cy / 2.0;
    // The corners do not touch the ring.
    const auto nHalf = static_cast<int32_t>((dInner - 4) / std::sqrt(2.0));
    return {x,        y, dOuter, dInner, static_cast<int32_t>(x) - nHalf, static_cast<int32_t>(y) - nHalf,
            2 * nHalf};
}

void CColorCircleView::DrawRing(CGDIBuffer& buffer, const TGeometry& g) {
    const CSize sz = buffer.GetSize();
    for (int32_t py = 0; py < sz.cy; ++py)
        for (int32_t px = 0; px < sz.cx; ++px) {
            const double dX = px + 0.5 - g.x, dY = py + 0.5 - g.y;
            const double d = std::hypot(dX, dY);
            const double dCoverage =
                std::clamp(g.dOuter - d + 0.5, 0.0, 1.0) * std::clamp(d - g.dInner + 0.5, 0.0, 1.0);
            if (dCoverage > 0) BlendPixel(buffer, {px, py}, ColorOfHsv({HueAt(dX, dY), 255, 255}), dCoverage);
        }
}

void CColorCircleView::DrawSquare(CGDIBuffer& buffer, const TGeometry& g, int nHue) {
    const int nLast = std::max(1, g.nSide - 1);
    for (int y = 0; y < g.nSide; ++y)
        for (int x = 0; x < g.nSide; ++x) {
            const TColor color = ColorOfHsv({nHue, x * 255 / nLast, 255 - y * 255 / nLast});
            BlendPixel(buffer, {g.nLeft + x, g.nTop + y}, color, 1);
        }
}

void CColorCircleView::Draw(CGDIBuffer& buffer, const TPanelPaint& paint) {
    const TGeometry g = Measure(paint.sz);
    const CRect rcAll({0, 0}, paint.sz);
    if (!m_pGround || !(m_pGround->GetSize() == paint.sz) || m_hsvGround.nHue != m_hsv.nHue ||
        m_clrGround != paint.clrBack) {
        m_pGround = std::make_unique<CGDIBuffer>(paint.sz);
        m_hsvGround = m_hsv;
        m_clrGround = paint.clrBack;
        FillColor(*m_pGround, rcAll, paint.clrBack);
        DrawRing(*m_pGround, g);
        DrawSquare(*m_pGround, g, m_hsv.nHue);
    }
    buffer.CopyFrom(*m_pGround, rcAll);
    const double dMiddle = (g.dOuter + g.dInner) / 2, dAngle = m_hsv.nHue * PI / 180;
    DrawMark(buffer, {g.x + dMiddle * std::cos(dAngle), g.y - dMiddle * std::sin(dAngle)}, paint.dScale);
    const int nLast = g.nSide - 1;
    DrawMark(
        buffer,
        {g.nLeft + m_hsv.nSaturation * nLast / 255 + 0.5, g.nTop + (255 - m_hsv.nValue) * nLast / 255 + 0.5},
        paint.dScale);
}

bool CColorCircleView::OnPointer(EMessage id, CPoint pt) {
    if (GetSize().cx <= 0) return false;
    const TGeometry g = Measure(GetSize());
    const double dX = pt.x + 0.5 - g.x, dY = pt.y + 0.5 - g.y;
    if (id == EMessage::LButtonDown) {
        const double d = std::hypot(dX, dY);
        const CRect rcSquare({g.nLeft, g.nTop}, {g.nSide, g.nSide});
        const bool bSquare =
            pt.x >= rcSquare.left && pt.y >= rcSquare.top && pt.x < rcSquare.right && pt.y < rcSquare.bottom;
        // A press between square and ring counts for the ring.
        m_part = bSquare ? EPart::Square : d <= g.dOuter + 2 ? EPart::Ring : EPart::None;
    }
    const THsv hsvOld = m_hsv;
    if (m_part == EPart::Ring) m_hsv.nHue = HueAt(dX, dY);
    if (m_part == EPart::Square) {
        const int nLast = std::max(1, g.nSide - 1);
        m_hsv.nSaturation = std::clamp((pt.x - g.nLeft) * 255 / nLast, 0, 255);
        m_hsv.nValue = 255 - std::clamp((pt.y - g.nTop) * 255 / nLast, 0, 255);
    }
    if (id == EMessage::LButtonUp) m_part = EPart::None;
    return !(m_hsv == hsvOld);
}

bool CColorCircleView::OnKey(int nKey) {
    const THsv hsvOld = m_hsv;
    const auto step = [](int n, int nBy) { return std::clamp(n + nBy, 0, 255); };
    if (nKey == VK_Left) m_hsv.nSaturation = step(m_hsv.nSaturation, -KEY_STEP);
    if (nKey == VK_Right) m_hsv.nSaturation = step(m_hsv.nSaturation, KEY_STEP);
    if (nKey == VK_Down) m_hsv.nValue = step(m_hsv.nValue, -KEY_STEP);
    if (nKey == VK_Up) m_hsv.nValue = step(m_hsv.nValue, KEY_STEP);
    return !(m_hsv == hsvOld);
}

void CTwoColorBoxView::Draw(CGDIBuffer& buffer, const TPanelPaint& paint) {
    const int32_t nSide = std::min(paint.sz.cx, paint.sz.cy) * 2 / 3;
    FillFramed(buffer, CRect({paint.sz.cy - nSide, paint.sz.cy - nSide}, {nSide, nSide}), m_clrBack);
    FillFramed(buffer, CRect({0, 0}, {nSide, nSide}), m_clrBrush);
}

void CSwatchView::Draw(CGDIBuffer& buffer, const TPanelPaint& paint) {
    FillFramed(buffer, CRect({0, 0}, paint.sz), m_color.value_or(paint.clrBack));
    const double dRight = paint.sz.cx, dBottom = paint.sz.cy;
    if (!m_color) DrawLine(buffer, {1, dBottom - 1}, {dRight - 1, 1}, 1, FRAME);
}

void CColorListView::Draw(CGDIBuffer& buffer, const TPanelPaint& paint) {
    const int32_t nWidth = paint.sz.cx / COLUMNS;
    for (int n = 0; n < COLUMNS; ++n) {
        const CRect rc({n * nWidth, 1}, {nWidth - 2, paint.sz.cy - 2});
        if (static_cast<size_t>(n) < m_vColors.size())
            FillColor(buffer, rc, m_vColors[static_cast<size_t>(n)]);
        FrameColor(buffer, rc, FRAME);
        if (paint.bFocus && n == m_nSelected)
            FrameColor(buffer, {rc.left - 1, rc.top + 1, rc.right + 1, rc.bottom - 1}, paint.clrText);
    }
}

int CColorListView::FindAt(CPoint pt) const {
    const int32_t nWidth = GetSize().cx / COLUMNS;
    if (nWidth <= 0 || pt.x < 0 || pt.y < 0 || pt.y >= GetSize().cy) return -1;
    const int n = pt.x / nWidth;
    return static_cast<size_t>(n) < m_vColors.size() ? n : -1;
}
