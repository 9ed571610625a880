// From pointer events to control points: start and end of a freehand stroke, filtering of events, and the
// points added from the pen's movement before and after contact.
#pragma once

#include "core/RasterMove/RasterMove.h"
#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/RasterStroke.h"

#include <deque>

/// A freehand tool's settings other than the brush itself.
struct TFreehandParam {
    uint32_t m_uStrokeIn = 1;   ///< length of the entry: 0 short, 1 middle, 2 long
    uint32_t m_uStrokeOut = 1;  ///< length of the exit
    uint32_t m_uSlowSmooth = 0; ///< distance added between points of a slow hand; 0 off, 4, 8 or 12
    bool m_bSlowScale = false;  ///< distances are in canvas pixels, otherwise in screen pixels
    TColor m_clrBrush = 0;
    TColor m_clrBack = 0xFFFFFF;

    friend bool operator==(const TFreehandParam&, const TFreehandParam&) = default;
};

class CRasterBrushBase : public CRasterMove {
public:
    using CRasterMove::CRasterMove;

    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags) override;
    bool OnLButtonDown(int32_t x, int32_t y, uint32_t flags) override;
    bool OnLButtonUp(int32_t x, int32_t y, uint32_t flags) override;
    /// Handled as an ordinary event of its contact when a press in place is a dot.
    bool OnPenTip(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags) override {
        return m_bTapDot && OnMouseMove(x, y, pressure, altitude, flags);
    }
    /// The pen left during a stroke, which ends it, or entered during one, whose end was missed. In both
    /// cases the pen's earlier movement is dropped.
    bool OnProximityLeave() override;
    bool OnProximityEnter() override { return OnProximityLeave(); }
    bool OnMouseLeave() override;
    /// Makes the brush a step larger or smaller, by an eighth of its size.
    bool OnCommand(int nId) override;
    bool CanCommand(int nId) const override;
    /// Drops the stroke, or completes it when the pen had already been lifted.
    bool Cancel() override;

    /// The settings, which the panels edit in place.
    TBrushParam& GetParam() { return m_param; }
    const TBrushParam& GetParam() const { return m_param; }
    TFreehandParam& GetFreehand() { return m_freehand; }

protected:
    /// Creates the tool's stroke on a canvas.
    virtual boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) = 0;
    /// True when the next press picks a colour.
    bool IsPicking() const { return m_bPick; }
    void SetPicking(bool bPick) { m_bPick = bPick; }

    TBrushParam m_param;
    TFreehandParam m_freehand;
    bool m_bTapDot = true; ///< a press in place draws a dot, and lifting in place ends a line
    CPoint m_ptCursor;     ///< position of the round cursor
    bool m_bCursorValid = false;

private:
    bool IsAway(CPoint ptFrom, CPoint pt) const;
    bool TakePosition(CPoint pt, bool bAlways);
    bool MovePen(const TCtlPoint& sample);
    void BeginTabletStroke(const TCtlPoint& first);
    bool IsPenUp() const;
    int TakeRepeat();
    void NotePlace(CPoint pt);
    void AddPoint(const TCtlPoint& point);
    void EndAtLast();
    bool PickColor(CPoint pt);
    void ForgetWay();
    void BeginStroke(const TCtlPoint& first);
    void CommitStroke();
    void CancelStroke();
    boost::shared_ptr<CRasterLayerBuffer> GetStrokeLayer(const wchar_t* pszFailure) const;

    std::deque<TCtlPoint> m_lstHistory; ///< the newest tablet samples, during and between strokes
    std::deque<int> m_lstRepeat;        ///< repeat counts of a stroke's first points
    TCtlPoint m_tap{};                  ///< the position of first contact, with its highest pressure
    std::deque<TCtlPoint> m_deqHeld;    ///< points held back until the stroke is known not to be a tap
    bool m_bLine = false;               ///< the stroke has moved away from its start
    bool m_bContact = false;            ///< the pen's last event had pressure
    CPoint m_ptLast;
    bool m_bHasLast = false;
    bool m_bPick = false;
    boost::shared_ptr<CRasterStroke> m_spStroke;
};
