// The editor of the pressure curve: a cubic Bezier curve from the lower left corner of a box to the upper
// right one, with a handle at either end.
#pragma once

#include "core/Platform/Panel.h"
#include "core/RasterStroke/BrushParam.h"

#include <boost/noncopyable.hpp>

class CGDIBuffer;

/// The positions of the handles, in percent, y from the top.
struct TPressHandles {
    int x1 = 0, y1 = 100;
    int x2 = 100, y2 = 0;

    friend bool operator==(const TPressHandles&, const TPressHandles&) = default;
};

TPressHandles HandlesOf(const TBrushParam& param);
void SetHandles(TBrushParam& param, const TPressHandles& handles);

/// Limits a handle to at least 2 percent from both sides of its corner and at most 80 percent from the
/// corner, so that it cannot reach the other one.
void LimitHandle1(TPressHandles& handles);
void LimitHandle2(TPressHandles& handles);

class CPressCurveView : public IPanelView, boost::noncopyable {
public:
    TPressHandles m_handles;

    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;
    /// A press near a handle starts a drag. True when the handles changed.
    bool OnPointer(EMessage id, CPoint pt);
    /// Arrow keys move the selected handle, Space selects the other one. True when a redraw is due.
    bool OnKey(int nKey);

private:
    /// The largest centred square, less 2 pixels at each side.
    CRect GetBox() const;
    CPoint ToPercent(CPoint pt) const;
    void MoveHandle(CPoint ptPercent);

    CSize m_size; ///< at the last paint
    double m_dScale = 1;
    CPoint m_ptPressed;
    bool m_bMoved = false; ///< the pointer has moved since the drag began
    int m_nDragged = 0;    ///< 1 or 2 while a handle is dragged, else 0
    int m_nSelected = 1;   ///< the handle that the keyboard moves
};
