#include "core/CanvasFrame/SelectionOutline.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr int64_t DASH = 5;
constexpr int64_t STEP_MS = 100;

// Rounds down, so that the dash across zero is as long as any other.
bool IsWhite(int64_t n) { return (n >= 0 ? n / DASH : -((-n + DASH - 1) / DASH)) % 2 != 0; }

// The client pixels of a piece of the outline.
CRect PixelsOf(const TOutlineSegment& segment, const CCanvasView& view) {
    CRect rc = view.ToWindow(CRect(segment.x1, segment.y1, segment.x2, segment.y2));
    ++rc.right; // both ends belong to the line
    ++rc.bottom;
    return rc;
}

} // namespace

COutlineCells::COutlineCells(CSize szClient)
    : m_szClient(szClient), m_szCells{(szClient.cx + CELL - 1) / CELL, (szClient.cy + CELL - 1) / CELL},
      m_vSet(static_cast<size_t>(m_szCells.cx) * static_cast<size_t>(m_szCells.cy)) {}

template <class Function>
bool COutlineCells::AnyUnder(const CRect& rc, Function fn) const {
    if (rc.IsEmpty()) return false;
    for (int32_t y = rc.top / CELL; y <= (rc.bottom - 1) / CELL; ++y)
        for (int32_t x = rc.left / CELL; x <= (rc.right - 1) / CELL; ++x)
            if (fn(static_cast<size_t>(y) * static_cast<size_t>(m_szCells.cx) + static_cast<size_t>(x)))
                return true;
    return false;
}

void COutlineCells::Add(const CRect& rc) {
    AnyUnder(rc, [&](size_t idx) { return m_vSet[idx] = true, false; });
}

void COutlineCells::Add(const COutlineCells& other) {
    if (!(m_szClient == other.m_szClient)) {
        *this = other;
        return;
    }
    for (size_t idx = 0; idx < m_vSet.size(); ++idx)
        if (other.m_vSet[idx]) m_vSet[idx] = true;
}

bool COutlineCells::Touches(const CRect& rc) const {
    return AnyUnder(rc.Intersect({{0, 0}, m_szClient}), [&](size_t idx) -> bool { return m_vSet[idx]; });
}

std::vector<CRect> COutlineCells::GetRects() const {
    std::vector<CRect> vRects;
    const auto isSet = [&](int32_t x, int32_t y) {
        return x < m_szCells.cx && m_vSet[static_cast<size_t>(y * m_szCells.cx + x)];
    };
    for (int32_t y = 0; y < m_szCells.cy; ++y)
        for (int32_t x = 0; x < m_szCells.cx; ++x) {
            const int32_t nFirst = x;
            while (isSet(x, y)) ++x;
            if (x == nFirst) continue;
            const CRect rc(nFirst * CELL, y * CELL, std::min(x * CELL, m_szClient.cx),
                           std::min((y + 1) * CELL, m_szClient.cy));
            const auto itAbove = std::find_if(vRects.begin(), vRects.end(), [&](const CRect& rcAbove) {
                return rcAbove.bottom == rc.top && rcAbove.left == rc.left && rcAbove.right == rc.right;
            });
            if (itAbove != vRects.end())
                itAbove->bottom = rc.bottom;
            else
                vRects.push_back(rc);
        }
    return vRects;
}

const COutlineCells& CSelectionDashes::Locate(const TSelectPtr& spSelect, const CCanvasView& view) {
    if (spSelect == m_wpSelect.lock() && m_cells.GetClient() == view.GetClient() &&
        m_state == view.GetState() && m_ptOrigin == view.GetOrigin())
        return m_cells;
    m_cells = COutlineCells(view.GetClient());
    if (spSelect)
        for (const TOutlineSegment& segment : spSelect->GetOutline())
            m_cells.Add(PixelsOf(segment, view).Intersect({{0, 0}, view.GetClient()}));
    m_wpSelect = spSelect;
    m_state = view.GetState();
    m_ptOrigin = view.GetOrigin();
    return m_cells;
}

bool CSelectionDashes::Crosses(const TSelectPtr& spSelect, const CCanvasView& view, const CRect& rc) {
    return spSelect && Locate(spSelect, view).Touches(rc);
}

void CSelectionDashes::Draw(CGDIBuffer& target, const CRect& rcClip, const TSelectPtr& spSelect,
                            const CCanvasView& view, uint32_t uTick) {
    if (!Crosses(spSelect, view, rcClip)) return;
    m_cellsDrawn.Add(m_cells);
    const CRect rcInside = rcClip.Intersect(CRect({0, 0}, target.GetSize()));
    const int64_t nStep = uTick / STEP_MS;
    for (const TOutlineSegment& segment : spSelect->GetOutline()) {
        const CRect rc = PixelsOf(segment, view).Intersect(rcInside);
        for (int32_t y = rc.top; y < rc.bottom; ++y)
            for (int32_t x = rc.left; x < rc.right; ++x)
                std::memset(target.GetPixelPtr({x, y}), IsWhite(int64_t{x} + y - nStep) ? 255 : 0, 3);
    }
}

std::vector<CRect> CSelectionDashes::TakeStale(const TSelectPtr& spSelect, const CCanvasView& view) {
    m_cellsDrawn.Add(Locate(spSelect, view));
    return std::exchange(m_cellsDrawn, COutlineCells(view.GetClient())).GetRects();
}
