// From pointer events to control points: when a freehand stroke begins and ends, which events count, and what
// the pen's way before contact and after it adds.
#pragma once

#include "core/RasterMove/RasterMove.h"
#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/RasterStroke.h"

#include <deque>

/// What a freehand tool has set besides the brush itself.
struct TFreehandParam {
    uint32_t m_uStrokeIn = 1;   ///< length of the entry: 0 short, 1 middle, 2 long
    uint32_t m_uStrokeOut = 1;  ///< length of the exit
    uint32_t m_uSlowSmooth = 0; ///< points of a slow hand lie this much further apart; 0 off, 4, 8 or 12
    bool m_bSlowScale = false;  ///< distances count in canvas pixels, else in screen pixels
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
    /// An event of its contact like any other, where a press in place is a dot.
    bool OnPenTip(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags) override {
        return m_bTapDot && OnMouseMove(x, y, pressure, altitude, flags);
    }
    /// A pen that leaves in a stroke ends it, and one that comes in a stroke had left unnoticed. Either has
    /// no way behind it.
    bool OnProximityLeave() override;
    bool OnProximityEnter() override { return OnProximityLeave(); }
    bool OnMouseLeave() override;
    /// Drops the stroke, or ends it when the pen had already been lifted.
    bool Cancel() override;

    /// The settings, open to the panels, which change them in place.
    TBrushParam& GetParam() { return m_param; }
    const TBrushParam& GetParam() const { return m_param; }
    TFreehandParam& GetFreehand() { return m_freehand; }

protected:
    /// The stroke that the tool draws with on a canvas.
    virtual boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) = 0;
    /// True when the next press takes a colour.
    bool IsPicking() const { return m_bPick; }
    void SetPicking(bool bPick) { m_bPick = bPick; }

    TBrushParam m_param;
    TFreehandParam m_freehand;
    bool m_bTapDot = true; ///< a press in place is a dot, and a lift in place ends a line
    CPoint m_ptCursor;     ///< where the round cursor is drawn
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

    std::deque<TCtlPoint> m_lstHistory; ///< the newest tablet samples, in strokes and between them
    std::deque<int> m_lstRepeat;        ///< how often each of a stroke's first points counts
    TCtlPoint m_tap{};                  ///< the first place of contact, with its highest pressure
    std::deque<TCtlPoint> m_deqHeld;    ///< what the stroke gets once it is no tap
    bool m_bLine = false;               ///< the stroke has been elsewhere
    bool m_bContact = false;            ///< the pen's last event had pressure
    CPoint m_ptLast;
    bool m_bHasLast = false;
    bool m_bPick = false;
    boost::shared_ptr<CRasterStroke> m_spStroke;
};
