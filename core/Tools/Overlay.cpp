#include "core/Tools/Overlay.h"

#include "core/Tools/ShapePixels.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace {

constexpr int32_t DASH = 4; ///< pixels at 96 dpi

void SetColor(uint8_t* p, TColor color) {
    p[0] = BlueOf(color);
    p[1] = GreenOf(color);
    p[2] = RedOf(color);
}

CRect Around(const CRect& rc, int32_t n) { return {rc.left - n, rc.top - n, rc.right + n, rc.bottom + n}; }

// The pick icon, a ring and a dropper: '#' is black, '.' white.
constexpr int32_t ICON_SIDE = 16;
constexpr const char* PICK_ICON[ICON_SIDE] = {
    "           ..###", //
    "      ####..####", //
    "    ##....######", //
    "   #..   .#####.", //
    "  #..    ..###..", //
    "  #.     .#.##. ", //
    " #.     .#.#...#", //
    " #.     .##.  .#", //
    " #.      ..   .#", //
    " #.           .#", //
    " #.           .#", //
    "  #.         .# ", //
    "  #..       ..# ", //
    "   #..     ..#  ", //
    "    ##.....##   ", //
    "      #####     ", //
};

} // namespace

int32_t COverlay::ToDevice(int32_t n) const {
    return std::max(1, (n * m_nDpi + DPI_NORMAL / 2) / DPI_NORMAL);
}

// A pen's square extends to the left and above by half of its excess over one pixel, and by the rest to the
// right and below.
void COverlay::Measure(const CRect& rcPoints) {
    if (rcPoints.IsEmpty()) return;
    const int32_t nMore = ToDevice(1) - 1;
    m_rcBounds = m_rcBounds.Union({rcPoints.left - nMore / 2, rcPoints.top - nMore / 2,
                                   rcPoints.right + nMore - nMore / 2, rcPoints.bottom + nMore - nMore / 2});
}

void COverlay::Stroke(const CShapePixels& shape, const TOverlayPen& pen) {
    const int32_t nWide = ToDevice(1), nBefore = (nWide - 1) / 2;
    const int64_t nDash = ToDevice(DASH);
    std::vector<std::pair<int32_t, int32_t>> vPixels; // row, column of those to invert
    for (const CShapePixels::TPixel& pixel : shape.GetPixels()) {
        if (pen.bDashed && pixel.nAlong / nDash % 2 != 0) continue;
        const CRect rc = CRect(pixel.pt - CPoint{nBefore, nBefore}, CSize{nWide, nWide}).Intersect(m_rcClip);
        for (int32_t y = rc.top; y < rc.bottom; ++y)
            for (int32_t x = rc.left; x < rc.right; ++x)
                if (pen.bInvert)
                    vPixels.emplace_back(y, x);
                else
                    SetColor(m_pTarget->GetPixelPtr({x, y}), pen.color);
    }
    // A pixel that is inverted twice would be invisible.
    std::sort(vPixels.begin(), vPixels.end());
    vPixels.erase(std::unique(vPixels.begin(), vPixels.end()), vPixels.end());
    for (const auto& [y, x] : vPixels) {
        uint8_t* p = m_pTarget->GetPixelPtr({x, y});
        for (int n = 0; n < 3; ++n) p[n] = static_cast<uint8_t>(~p[n]);
    }
}

void COverlay::DrawLine(CPoint ptFrom, CPoint ptTo, const TOverlayPen& pen) {
    DrawPolyline(std::array{ptFrom, ptTo}, pen);
}

void COverlay::DrawPolyline(std::span<const CPoint> points, const TOverlayPen& pen) {
    StrokeLines(ToFine(points), pen);
}

void COverlay::StrokeLines(std::span<const TFinePoint> points, const TOverlayPen& pen) {
    Measure(BoundsOf(points));
    if (!m_pTarget) return;
    CShapePixels shape(Around(m_rcClip, ToDevice(1)));
    shape.AddPolyline(points);
    Stroke(shape, pen);
}

void COverlay::DrawRect(const CRect& rc, const TOverlayPen& pen) {
    const CPoint ptFirst = rc.TopLeft();
    DrawPolyline(
        std::array<CPoint, 5>{
            ptFirst, {rc.right, rc.top}, {rc.right, rc.bottom}, {rc.left, rc.bottom}, ptFirst},
        pen);
}

void COverlay::DrawEllipse(const CRect& rc, const TOverlayPen& pen) {
    if (pen.bDashed) return StrokeLines(FlattenEllipse(rc), pen); // dashes need the order of the line
    Measure({rc.left, rc.top, rc.right + 1, rc.bottom + 1});
    if (!m_pTarget) return;
    CShapePixels shape(Around(m_rcClip, ToDevice(1)));
    shape.AddEllipse(rc);
    Stroke(shape, pen);
}

void COverlay::DrawCurves(std::span<const CPoint> points, const TOverlayPen& pen) {
    StrokeLines(FlattenCurves(points), pen);
}

void COverlay::DrawSquare(CPoint pt, int32_t nReach, std::optional<TColor> fill, const TOverlayPen& pen) {
    const int32_t n = ToDevice(nReach);
    const CRect rc{pt.x - n, pt.y - n, pt.x + n, pt.y + n};
    if (fill) FillRect({rc.left, rc.top, rc.right + 1, rc.bottom + 1}, *fill);
    DrawRect(rc, pen);
}

void COverlay::FillRect(const CRect& rc, TColor color) {
    m_rcBounds = m_rcBounds.Union(rc);
    if (!m_pTarget) return;
    const CRect rcInside = rc.Intersect(m_rcClip);
    for (int32_t y = rcInside.top; y < rcInside.bottom; ++y)
        for (int32_t x = rcInside.left; x < rcInside.right; ++x)
            SetColor(m_pTarget->GetPixelPtr({x, y}), color);
}

void COverlay::DrawPickIcon(CPoint pt) {
    const int32_t nDot = ToDevice(1);
    const CPoint ptFirst = pt - CPoint{ICON_SIDE / 2 * nDot, ICON_SIDE / 2 * nDot};
    m_rcBounds = m_rcBounds.Union(CRect(ptFirst, CSize{(ICON_SIDE + 1) * nDot, (ICON_SIDE + 1) * nDot}));
    for (int32_t y = 0; y < ICON_SIDE; ++y)
        for (int32_t x = 0; x < ICON_SIDE; ++x)
            if (PICK_ICON[y][x] != ' ')
                FillRect(CRect(ptFirst + CPoint{x * nDot, y * nDot}, CSize{nDot, nDot}),
                         PICK_ICON[y][x] == '.' ? 0xFFFFFF : 0);
}
