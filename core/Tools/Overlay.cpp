#include "core/Tools/Overlay.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

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

// The pixels of an ellipse line, each once: for every row and every column the two nearest points of the
// line.
std::vector<CPoint> EllipsePixels(const CRect& rc) {
    const double dRadiusX = (rc.right - rc.left) / 2.0;
    const double dRadiusY = (rc.bottom - rc.top) / 2.0;
    const double dX = rc.left + dRadiusX;
    const double dY = rc.top + dRadiusY;
    std::vector<std::pair<int32_t, int32_t>> v;
    const auto reach = [](double d, double dRadius) {
        const double dRatio = dRadius > 0 ? d / dRadius : 0;
        return std::sqrt(std::max(0.0, 1 - dRatio * dRatio));
    };
    const auto round = [](double d) { return static_cast<int32_t>(std::floor(d + 0.5)); };
    for (int32_t y = rc.top; y <= rc.bottom; ++y)
        for (const int nSide : {-1, 1})
            v.emplace_back(round(dX + nSide * dRadiusX * reach(y - dY, dRadiusY)), y);
    for (int32_t x = rc.left; x <= rc.right; ++x)
        for (const int nSide : {-1, 1})
            v.emplace_back(x, round(dY + nSide * dRadiusY * reach(x - dX, dRadiusX)));
    // A pixel that is inverted twice would not show.
    std::sort(v.begin(), v.end());
    v.erase(std::unique(v.begin(), v.end()), v.end());
    std::vector<CPoint> vPixels;
    for (const auto& [x, y] : v) vPixels.push_back({x, y});
    return vPixels;
}

} // namespace

uint8_t* COverlay::Pixel(CPoint pt) {
    m_rcBounds = m_rcBounds.Union(CRect(pt, CSize{1, 1}));
    const bool bInside =
        pt.x >= m_rcClip.left && pt.x < m_rcClip.right && pt.y >= m_rcClip.top && pt.y < m_rcClip.bottom;
    return m_pTarget && bInside ? m_pTarget->GetPixelPtr(pt) : nullptr;
}

void COverlay::InvertEllipse(const CRect& rc) {
    if (!m_pTarget) {
        m_rcBounds = m_rcBounds.Union({rc.left, rc.top, rc.right + 1, rc.bottom + 1});
        return;
    }
    for (const CPoint pt : EllipsePixels(rc))
        if (uint8_t* p = Pixel(pt))
            for (int n = 0; n < 3; ++n) p[n] = static_cast<uint8_t>(~p[n]);
}

void COverlay::DrawPickIcon(CPoint pt) {
    const CPoint ptFirst = pt - CPoint{ICON_SIDE / 2, ICON_SIDE / 2};
    m_rcBounds = m_rcBounds.Union(CRect(ptFirst, CSize{ICON_SIDE + 1, ICON_SIDE + 1}));
    for (int32_t y = 0; y < ICON_SIDE; ++y)
        for (int32_t x = 0; x < ICON_SIDE; ++x)
            if (PICK_ICON[y][x] != ' ')
                if (uint8_t* p = Pixel(ptFirst + CPoint{x, y}))
                    std::fill_n(p, 3, static_cast<uint8_t>(PICK_ICON[y][x] == '.' ? 255 : 0));
}
