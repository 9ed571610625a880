#include "core/CanvasFrame/CanvasView.h"

#include "core/CanvasFrame/ZoomList.h"

#include <algorithm>

namespace {

constexpr int32_t MARGIN_TOTAL = 180; ///< 90 pixels on each side of the scaled canvas
constexpr double FIT_MARGIN = 200;

// The canvas position of a scaled position, both with `nUnit` steps a canvas pixel.
CPoint Unmap(int64_t x, int64_t y, const TNormalView& view, CSize szCanvas, int64_t nUnit) {
    if (view.bSwap) std::swap(x, y);
    if (view.bFlipV) y = szCanvas.cy * nUnit - y;
    if (view.bFlipH) x = szCanvas.cx * nUnit - x;
    return {static_cast<int32_t>(x), static_cast<int32_t>(y)};
}

} // namespace

CPoint CCanvasView::ToCanvas8(CPoint ptWindow, int32_t nScale) const {
    const auto scaled = [&](int64_t n, int64_t nScroll, int64_t nMargin) {
        return (n * 8 / nScale + (nScroll - nMargin) * 8) * 48 / m_view.uZoom;
    };
    return Unmap(scaled(ptWindow.x, m_ptScroll.x, m_ptMargin.x),
                 scaled(ptWindow.y, m_ptScroll.y, m_ptMargin.y), NormalizeView(m_view), m_szCanvas, 8);
}

CPoint CCanvasView::ToCanvas(CPoint ptWindow) const {
    const auto scaled = [&](int64_t n, int64_t nScroll, int64_t nMargin) {
        return (n + nScroll - nMargin) * 48 / m_view.uZoom;
    };
    return Unmap(scaled(ptWindow.x, m_ptScroll.x, m_ptMargin.x),
                 scaled(ptWindow.y, m_ptScroll.y, m_ptMargin.y), NormalizeView(m_view), m_szCanvas, 1);
}

CPoint CCanvasView::Map(CPoint ptCanvas, int64_t nUnit, int64_t nRound) const {
    // The flips here are in canvas space: exchanging the axes at 90 degrees inverts the vertical one as
    // well.
    const bool bHalfTurn = m_view.uAngle >= 180;
    int64_t x = ptCanvas.x;
    int64_t y = ptCanvas.y;
    if (m_view.bFlipV != bHalfTurn) y = m_szCanvas.cy * nUnit - y;
    if (m_view.bFlipH != bHalfTurn) x = m_szCanvas.cx * nUnit - x;
    if (m_view.uAngle % 180 != 0) {
        const int64_t nOldX = x;
        x = m_szCanvas.cy * nUnit - y;
        y = nOldX;
    }
    // Rounded down also outside the canvas, where the overlay is drawn too.
    const auto scaled = [&](int64_t n) {
        const int64_t nSum = n * m_view.uZoom + nRound, nBy = 48 * nUnit;
        return nSum / nBy - (nSum % nBy < 0);
    };
    return {static_cast<int32_t>(scaled(x) + m_ptMargin.x - m_ptScroll.x),
            static_cast<int32_t>(scaled(y) + m_ptMargin.y - m_ptScroll.y)};
}

CPoint CCanvasView::ToWindow(CPoint ptCanvas) const { return Map(ptCanvas, 1, 0); }
CPoint CCanvasView::ToWindow8(CPoint ptCanvas) const { return Map(ptCanvas, 8, 48 * 8 / 2); }

CPoint CCanvasView::PixelAt8(CPoint ptCanvas) const { return Map(ptCanvas, 8, 0); }

CRect CCanvasView::GetShownRect() const {
    const CPoint pt1 = ToCanvas8({0, 0});
    const CPoint pt2 = ToCanvas8({m_szClient.cx, m_szClient.cy});
    const CRect rc(std::min(pt1.x, pt2.x) / 8, std::min(pt1.y, pt2.y) / 8, (std::max(pt1.x, pt2.x) + 7) / 8,
                   (std::max(pt1.y, pt2.y) + 7) / 8);
    return rc.Intersect(CRect({0, 0}, m_szCanvas));
}

CRect CCanvasView::ToWindow(const CRect& rcCanvas) const {
    const CPoint pt1 = ToWindow(CPoint{rcCanvas.left, rcCanvas.top});
    const CPoint pt2 = ToWindow(CPoint{rcCanvas.right, rcCanvas.bottom});
    return {std::min(pt1.x, pt2.x), std::min(pt1.y, pt2.y), std::max(pt1.x, pt2.x), std::max(pt1.y, pt2.y)};
}

CSize CCanvasView::ExtentOf(CSize szScaled) {
    return {szScaled.cx + MARGIN_TOTAL, szScaled.cy + MARGIN_TOTAL};
}

void CCanvasView::SetCanvasSize(CSize szCanvas, CPoint ptCentre) {
    m_szCanvas = szCanvas;
    Arrange(ptCentre);
}

void CCanvasView::Apply(const TViewState& view, CSize szClient) {
    const CPoint ptCentre = GetCentre();
    m_view = view;
    m_szClient = szClient;
    Arrange(ptCentre);
}

void CCanvasView::Arrange(CPoint ptCentre) {
    const CSize szScaled = ScaledSize(m_szCanvas, m_view);
    const CSize szNeeded = ExtentOf(szScaled);
    m_szExtent = {std::max(szNeeded.cx, m_szClient.cx), std::max(szNeeded.cy, m_szClient.cy)};
    m_ptMargin = {(m_szExtent.cx - szScaled.cx) / 2, (m_szExtent.cy - szScaled.cy) / 2};
    m_szLine = {std::min(m_szExtent.cx, 10), std::min(m_szExtent.cy, 10)};
    m_szPage = {std::min(m_szExtent.cx, 100), std::min(m_szExtent.cy, 100)};
    m_ptScroll = {};
    const CPoint ptNow = ToWindow(ptCentre);
    ScrollTo({ptNow.x - m_szClient.cx / 2, ptNow.y - m_szClient.cy / 2});
}

void CCanvasView::ScrollTo(CPoint ptScroll) {
    m_ptScroll = {std::clamp(ptScroll.x, 0, std::max(0, m_szExtent.cx - m_szClient.cx)),
                  std::clamp(ptScroll.y, 0, std::max(0, m_szExtent.cy - m_szClient.cy))};
}

void CCanvasView::Center() {
    ScrollTo({(m_szExtent.cx - m_szClient.cx) / 2, (m_szExtent.cy - m_szClient.cy) / 2});
}

uint16_t FitZoom(CSize szPicture, CSize szClient) {
    for (const TZoomEntry& entry : GetZoomList())
        if (szPicture.cx * entry.uZoom <= szClient.cx * 48 && szPicture.cy * entry.uZoom <= szClient.cy * 48)
            return entry.uZoom;
    return GetZoomList().back().uZoom;
}

uint16_t FirstZoom(CSize szCanvas, CSize szClient) {
    const auto spare = [](int32_t nCanvas, int32_t nClient) {
        return (nCanvas - FIT_MARGIN) / std::max(nClient, 1);
    };
    const double f = std::max(spare(szCanvas.cx, szClient.cx), spare(szCanvas.cy, szClient.cy));
    // Only a canvas that does not fit is reduced; a small one opens at its own size.
    if (f <= 1) return 48;
    for (const TZoomEntry& entry : GetZoomList())
        if (entry.uZoom <= 48 / f) return entry.uZoom;
    return 48;
}
