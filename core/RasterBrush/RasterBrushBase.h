// From pointer events to control points: start and end of a freehand stroke, filtering of events, and the
// points added from the pen's movement before and after contact.
#pragma once

#include "core/RasterBrush/FreehandParam.h"
#include "core/RasterMove/RasterMove.h"
#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/RasterStroke.h"
#include "core/RasterStroke/StrokeInput.h"

#include <deque>

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
    const TFreehandParam& GetFreehand() const { return m_freehand; }
    /// Takes other settings over, with the values that the tool leaves no choice of.
    void SetParams(const TBrushParam& param, const TFreehandParam& freehand);
    /// The tool's name below the sections of the settings.
    virtual const std::wstring& GetSection() const = 0;
    /// True when strokes have the tool's colour.
    virtual bool DrawsInOwnColor() const { return true; }
    /// True when strokes have the edge that the settings tell.
    virtual bool HasSoftEdge() const { return true; }

protected:
    EArrowKeys GetArrowKeys() const override { return EArrowKeys::Nothing; }
    /// Sets the values that the tool leaves no choice of.
    virtual void Constrain() {}
    /// Creates the tool's stroke on a canvas.
    virtual boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) = 0;
    /// Shows a stroke on the operation's layer; null takes it away. Raises internal_error on a layer of
    /// another kind, except for null.
    virtual void ShowStroke(const boost::shared_ptr<CRasterStroke>& spStroke);
    /// Gives the layer the shown stroke, which has its last point. Raises internal_error on a layer of
    /// another kind.
    virtual void FinishStroke(const boost::shared_ptr<CRasterStroke>& spStroke, const TStrokeInput& input);
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
    void NotePlace(CPoint pt);
    int GetRepeats() const;
    void AddSample(const TCtlPoint& sample, int nTimes);
    void AddPoint(const TCtlPoint& point);
    void EndAtLast();
    bool PickColor(CPoint pt);
    void ForgetWay();
    void BeginStroke(const TCtlPoint& first);
    void CommitStroke();
    void CancelStroke();

    std::deque<TCtlPoint> m_lstHistory; ///< the newest tablet samples, during and between strokes
    TStrokeInput m_input;               ///< of the stroke
    std::vector<int> m_vRepeats;        ///< of its first points
    TCtlPoint m_tap{};                  ///< the position of first contact, with its highest pressure
    std::deque<TCtlPoint> m_deqHeld;    ///< points held back until the stroke is known not to be a tap
    bool m_bLine = false;               ///< the stroke has moved away from its start
    bool m_bContact = false;            ///< the pen's last event had pressure
    CPoint m_ptLast;
    bool m_bHasLast = false;
    bool m_bPick = false;
    boost::shared_ptr<CRasterStroke> m_spStroke;
};
