#include "core/PanelViews/PressCurveView.h"

#include "core/AppModule/ErrorBox.h"
#include "core/PanelViews/PanelDraw.h"
#include "core/Platform/System.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int NEAREST = 2;
constexpr int FARTHEST = 80;
constexpr int REACH = 14; ///< radius in pixels at 96 to the inch within which a press takes a handle
constexpr int SEGMENTS = 48;
constexpr TColor HANDLE = MakeColor(0x2E, 0x7D, 0xC8);
constexpr double GRID_PART = 0.14, EDGE_PART = 0.44; ///< of the text's colour in the paper's

// n * nTo / nFrom, rounded to the nearest; no argument is negative.
int Scale(int n, int nTo, int nFrom) { return (n * nTo + nFrom / 2) / nFrom; }

// Limits a handle's distances from its corner.
void LimitReach(int& dx, int& dy) {
    dx = std::max(dx, NEAREST);
    dy = std::max(dy, NEAREST);
    const int nLength = static_cast<int>(std::sqrt(dx * dx + dy * dy));
    if (nLength < FARTHEST) return;
    dx = Scale(dx, FARTHEST, nLength);
    dy = Scale(dy, FARTHEST, nLength);
}

} // namespace

TPressHandles HandlesOf(const TBrushParam& param) {
    return {static_cast<int>(param.PressCurve1x), static_cast<int>(param.PressCurve1y),
            static_cast<int>(param.PressCurve2x), static_cast<int>(param.PressCurve2y)};
}

void SetHandles(TBrushParam& param, const TPressHandles& handles) {
    param.PressCurve1x = static_cast<uint32_t>(handles.x1);
    param.PressCurve1y = static_cast<uint32_t>(handles.y1);
    param.PressCurve2x = static_cast<uint32_t>(handles.x2);
    param.PressCurve2y = static_cast<uint32_t>(handles.y2);
}

void LimitHandle1(TPressHandles& handles) {
    int dy = 100 - handles.y1;
    LimitReach(handles.x1, dy);
    handles.y1 = 100 - dy;
}

void LimitHandle2(TPressHandles& handles) {
    int dx = 100 - handles.x2;
    LimitReach(dx, handles.y2);
    handles.x2 = 100 - dx;
}

CRect CPressCurveView::GetBox() const {
    const int32_t nSide = std::min(m_size.cx, m_size.cy) - 4;
    return CRect({(m_size.cx - nSide) / 2, (m_size.cy - nSide) / 2}, {nSide, nSide});
}

CPoint CPressCurveView::ToPercent(CPoint pt) const {
    const CRect rc = GetBox();
    const int32_t nSide = std::max(1, rc.Width() - 4);
    return {std::clamp((pt.x - rc.left) * 100 / nSide, 0, 100),
            std::clamp((pt.y - rc.top) * 100 / nSide, 0, 100)};
}

void CPressCurveView::MoveHandle(CPoint pt) {
    (m_nSelected == 1 ? m_handles.x1 : m_handles.x2) = pt.x;
    (m_nSelected == 1 ? m_handles.y1 : m_handles.y2) = pt.y;
}

bool CPressCurveView::OnPointer(EMessage id, CPoint pt) {
    const TPressHandles handlesOld = m_handles;
    const CPoint ptAt = ToPercent(pt);
    if (id == EMessage::LButtonDown) {
        const int nReach =
            std::max(1, static_cast<int>(REACH * m_dScale) * 100 / std::max(1, GetBox().Width()));
        const auto distance = [&](int x, int y) { return std::hypot(ptAt.x - x, ptAt.y - y); };
        const double d1 = distance(m_handles.x1, m_handles.y1), d2 = distance(m_handles.x2, m_handles.y2);
        m_nDragged = std::min(d1, d2) > nReach ? 0 : d1 <= d2 ? 1 : 2;
        if (m_nDragged) m_nSelected = m_nDragged;
        m_ptPressed = pt;
        m_bMoved = false;
    } else if (m_nDragged && (m_bMoved || !(pt == m_ptPressed))) {
        m_bMoved = true; // a click without a move leaves the handle unchanged
        MoveHandle(ptAt);
        m_nDragged == 1 ? LimitHandle1(m_handles) : LimitHandle2(m_handles);
    }
    if (id == EMessage::LButtonUp) m_nDragged = 0;
    return !(m_handles == handlesOld);
}

bool CPressCurveView::OnKey(int nKey) {
    if (nKey == VK_Space) {
        m_nSelected = 3 - m_nSelected;
        return true;
    }
    const CPoint pt =
        m_nSelected == 1 ? CPoint{m_handles.x1, m_handles.y1} : CPoint{m_handles.x2, m_handles.y2};
    const CPoint ptBy{(nKey == VK_Right) - (nKey == VK_Left), (nKey == VK_Down) - (nKey == VK_Up)};
    const TPressHandles handlesOld = m_handles;
    MoveHandle({std::clamp(pt.x + ptBy.x, 0, 100), std::clamp(pt.y + ptBy.y, 0, 100)});
    return !(m_handles == handlesOld);
}

void CPressCurveView::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    Guarded([&] {
        m_size = paint.sz;
        m_dScale = paint.dScale;
        const CRect rcAll({0, 0}, paint.sz), rc = GetBox();
        CGDIBuffer buffer(paint.sz);
        const TColor clrPaper = paint.bEnabled ? paint.clrBase : paint.clrBack;
        const TColor clrGrid = MixColors(clrPaper, paint.clrText, GRID_PART);
        const TColor clrEdge = MixColors(clrPaper, paint.clrText, EDGE_PART);
        FillColor(buffer, rcAll, paint.clrBack);
        FillColor(buffer, rc, clrPaper);
        const double dSide = rc.Width() - 5;
        const auto at = [&](double x, double y) {
            return TDrawPoint{rc.left + 2.5 + x * dSide / 100, rc.top + 2.5 + y * dSide / 100};
        };
        for (const int n : {25, 50, 75}) {
            DrawLine(buffer, at(n, 0), at(n, 100), 1, clrGrid);
            DrawLine(buffer, at(0, n), at(100, n), 1, clrGrid);
        }
        FrameColor(buffer, rc, clrEdge);
        const TPressHandles& h = m_handles;
        if (paint.bEnabled) {
            DrawLine(buffer, at(0, 100), at(h.x1, h.y1), m_dScale, HANDLE);
            DrawLine(buffer, at(100, 0), at(h.x2, h.y2), m_dScale, HANDLE);
        }
        TDrawPoint ptLast = at(0, 100);
        for (int n = 1; n <= SEGMENTS; ++n) {
            const double t = static_cast<double>(n) / SEGMENTS, s = 1 - t;
            const auto bezier = [&](double p0, double p1, double p2, double p3) {
                return s * s * s * p0 + 3 * s * s * t * p1 + 3 * s * t * t * p2 + t * t * t * p3;
            };
            const TDrawPoint pt = at(bezier(0, h.x1, h.x2, 100), bezier(100, h.y1, h.y2, 0));
            DrawLine(buffer, ptLast, pt, 1.6 * m_dScale, paint.bEnabled ? paint.clrText : clrEdge);
            ptLast = pt;
        }
        const auto mark = [&](int n, int x, int y) {
            DrawDisc(buffer, at(x, y), 5 * m_dScale, 0, clrPaper);
            DrawDisc(buffer, at(x, y), 5 * m_dScale, 1.5 * m_dScale, HANDLE);
            if (paint.bFocus && n == m_nSelected) DrawDisc(buffer, at(x, y), 3 * m_dScale, 0, HANDLE);
        };
        if (paint.bEnabled) {
            mark(1, h.x1, h.y1);
            mark(2, h.x2, h.y2);
        }
        target.Blit(buffer.GetPixelPtr({0, 0}), buffer.GetStride(), paint.sz, rcAll);
        return true;
    });
}
