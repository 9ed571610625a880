#include "core/GDIBuffer/ScreenMap.h"

#include <algorithm>
#include <utility>

namespace {

// The canvas sample of scaled position u on an axis of `nLength` canvas pixels.
int32_t SampleAt(int32_t u, int32_t nLength, int32_t nZoom) {
    const bool bShrink = nZoom < 48 && 48 % nZoom == 0;
    const int32_t nCell = bShrink ? 48 / nZoom : 0;
    const int64_t nAt = bShrink ? int64_t{u} * nCell + nCell / 2 : int64_t{u} * 48 / nZoom;
    return static_cast<int32_t>(std::min<int64_t>(nAt, nLength - 1));
}

int32_t ScaledLength(int32_t nLength, int32_t nZoom) {
    return std::max<int32_t>(1, static_cast<int32_t>(int64_t{nLength} * nZoom / 48));
}

std::vector<int32_t> MakeTable(int32_t nFirst, int32_t nLast, int32_t nOrigin, int32_t nLength, int32_t nZoom,
                               bool bFlip) {
    std::vector<int32_t> v;
    v.reserve(static_cast<size_t>(std::max(0, nLast - nFirst)));
    const int32_t nScaled = ScaledLength(nLength, nZoom);
    for (int32_t i = nFirst; i < nLast; ++i) {
        const int32_t u = i - nOrigin;
        v.push_back(SampleAt(bFlip ? nScaled - 1 - u : u, nLength, nZoom));
    }
    return v;
}

// First and one past the last index of a monotonic table whose values lie in [nLow, nHigh).
std::pair<int32_t, int32_t> RangeOf(const std::vector<int32_t>& v, int32_t nLow, int32_t nHigh) {
    if (v.empty()) return {0, 0};
    const bool bRising = v.front() <= v.back();
    const auto first =
        std::partition_point(v.begin(), v.end(), [&](int32_t n) { return bRising ? n < nLow : n >= nHigh; });
    const auto last =
        std::partition_point(first, v.end(), [&](int32_t n) { return bRising ? n < nHigh : n >= nLow; });
    return {static_cast<int32_t>(first - v.begin()), static_cast<int32_t>(last - v.begin())};
}

} // namespace

TNormalView NormalizeView(const TViewState& view) {
    TNormalView normal{view.uAngle % 180 != 0, view.bFlipH, view.bFlipV};
    if (view.uAngle >= 180) {
        normal.bFlipH = !normal.bFlipH;
        normal.bFlipV = !normal.bFlipV;
    }
    if (normal.bSwap) normal.bFlipV = !normal.bFlipV;
    return normal;
}

CSize ScaledSize(CSize szCanvas, const TViewState& view) {
    const CSize sz{ScaledLength(szCanvas.cx, view.uZoom), ScaledLength(szCanvas.cy, view.uZoom)};
    return view.uAngle % 180 == 0 ? sz : CSize{sz.cy, sz.cx};
}

CScreenMap::CScreenMap(CSize szCanvas, CPoint ptOrigin, const TViewState& view, CSize szTarget) {
    const TNormalView normal = NormalizeView(view);
    m_bSwap = normal.bSwap;
    m_rcTarget = CRect(ptOrigin, ScaledSize(szCanvas, view)).Intersect(CRect({0, 0}, szTarget));
    if (m_rcTarget.IsEmpty()) m_rcTarget = CRect();
    const bool bColumnFlip = m_bSwap ? normal.bFlipV : normal.bFlipH;
    const bool bRowFlip = m_bSwap ? normal.bFlipH : normal.bFlipV;
    m_vColumns = MakeTable(m_rcTarget.left, m_rcTarget.right, ptOrigin.x, m_bSwap ? szCanvas.cy : szCanvas.cx,
                           view.uZoom, bColumnFlip);
    m_vRows = MakeTable(m_rcTarget.top, m_rcTarget.bottom, ptOrigin.y, m_bSwap ? szCanvas.cx : szCanvas.cy,
                        view.uZoom, bRowFlip);
}

CRect CScreenMap::ToTarget(const CRect& rcCanvas) const {
    const auto [nLeft, nRight] = RangeOf(m_vColumns, m_bSwap ? rcCanvas.top : rcCanvas.left,
                                         m_bSwap ? rcCanvas.bottom : rcCanvas.right);
    const auto [nTop, nBottom] =
        RangeOf(m_vRows, m_bSwap ? rcCanvas.left : rcCanvas.top, m_bSwap ? rcCanvas.right : rcCanvas.bottom);
    return {m_rcTarget.left + nLeft, m_rcTarget.top + nTop, m_rcTarget.left + nRight,
            m_rcTarget.top + nBottom};
}

CRect CScreenMap::ToCanvas(const CRect& rcTarget) const {
    const CRect rc = rcTarget.Intersect(m_rcTarget);
    if (rc.IsEmpty()) return {};
    const auto [nX0, nX1] = std::minmax({AtColumn(rc.left), AtColumn(rc.right - 1)});
    const auto [nY0, nY1] = std::minmax({AtRow(rc.top), AtRow(rc.bottom - 1)});
    return m_bSwap ? CRect(nY0, nX0, nY1 + 1, nX1 + 1) : CRect(nX0, nY0, nX1 + 1, nY1 + 1);
}
