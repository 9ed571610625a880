// The base of the path tools: what lies under the pointer, drags, and what is drawn over the canvas.
#pragma once

#include "core/PathCtlPtHandle/VectorHandle.h"
#include "core/PathCtlPtHandle/VectorTool.h"

/// A path of the layer and its part under the pointer; empty for none.
struct TPathTarget {
    boost::shared_ptr<CPathObject> spPath;
    TPathHit hit;

    explicit operator bool() const { return spPath != nullptr; }
    bool IsSame(const TPathTarget& other) const {
        return spPath == other.spPath && hit.kind == other.hit.kind && hit.spPoint == other.hit.spPoint;
    }
};

/// The kinds of parts that a tool picks.
struct TPathKinds {
    bool bAnchor = true; ///< anchors and their handles
    bool bTerm = true;   ///< width points, cuts and ends with their handles
    bool bLine = true;   ///< the line, and the ink beside it
};

/// Positions are path units, which are the canvas positions of tools. The state is idle while nothing is
/// dragged. A press that takes hold of something becomes a drag when the pointer has moved 3 pixels of the
/// window (a pen: 4, both at 96 dpi); from then on the whole movement counts.
class CPathToolBase : public CVectorTool {
public:
    using CVectorTool::CVectorTool;
    ~CPathToolBase() override;

    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t flags) override;
    bool OnLButtonDown(int32_t x, int32_t y, uint32_t flags) override;
    bool OnLButtonUp(int32_t x, int32_t y, uint32_t flags) override;
    /// Ends a pen's drag at its last position.
    bool OnProximityLeave() override;
    bool OnPointerOver(CPoint pt) override;
    bool OnMouseLeave() override;
    /// The eraser end is the delete mode.
    bool OnPenEnd(bool bEraser) override;
    bool OnKeyDown(int nKey) override;
    bool OnKeyUp(int nKey) override;
    /// Restores the path that is being dragged.
    bool Cancel() override;
    void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const override;
    CRect GetOverlayRect(const TOverlayMapper& mapper) const override;
    std::optional<std::vector<CRect>> TakeOverlayChanges(const TOverlayMapper& mapper) override;
    ECursor GetCursor(CPoint pt) const override;

protected:
    /// A press on a target, which may be empty: returns the drag that it starts, or null when the press has
    /// done all or nothing.
    virtual boost::shared_ptr<CVectorHandle> OnPress(const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                                                     const TPathTarget& target, CPoint pt,
                                                     uint32_t flags) = 0;
    /// Called after each movement of the running drag.
    virtual void OnDragged(CPoint, uint32_t) {}
    /// Ends the running drag at the release; the base commits it.
    virtual void CommitHandle();
    /// Undo during a drag, or while SetHistoryCancel holds: the base cancels the drag. False when undo takes
    /// actions of the history again.
    virtual bool OnUndo();
    /// From now on undo calls OnUndo.
    void SetHistoryCancel();
    /// Called at a drag's end: the base lets undo take actions again.
    virtual void EndHistoryCancel() { RegisterHistoryCancel({}); }
    /// The kinds of parts that a press with these flags takes.
    virtual TPathKinds GetKinds(uint32_t flags) const = 0;
    /// The part that a press at a position takes; the base finds the nearest one of GetKinds.
    virtual TPathTarget FindPressed(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags) const {
        return FindTarget(layer, pt, flags, GetKinds(flags));
    }
    /// Called when the modifiers or the pointer have changed what lies under the pointer.
    void RefreshHover();
    /// Ends the running drag: commits or cancels it. False when there is none.
    bool EndDrag(bool bCommit);
    /// The pointer's shape over a target, which may be empty.
    virtual ECursor GetTargetCursor(const TPathTarget& target, uint32_t flags) const = 0;
    /// Draws more over the canvas; positions as given to the mapper.
    virtual void DrawMore(COverlay&, const TOverlayMapper&) const {}
    /// The client rectangle that DrawMore draws in.
    virtual CRect GetMoreRect(const TOverlayMapper&) const { return {}; }

    /// The nearest part at a position: points of the selected path before those of others, points before
    /// lines, and the ink of the topmost path last.
    TPathTarget FindTarget(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags,
                           const TPathKinds& kinds) const;
    /// Erases instead of dragging: with Shift or the pen's eraser end.
    bool IsDeleteMode(uint32_t flags) const { return m_bDeleteMode || (flags & POINTER_SHIFT); }
    /// The modifiers that are held now, as flags of an event.
    uint32_t GetHeldFlags() const;
    /// For handles: registers with the operation's history.
    TRegisterHistory GetRegister() const;
    /// Selects a path and a point of it on the layer and notifies the panels.
    void Select(CVectorLayerBuffer& layer, const boost::shared_ptr<CPathObject>& spPath,
                const boost::shared_ptr<CPathControlPoint>& spPoint = {});
    /// True while a press is held on something that is dragged.
    bool IsDragging() const { return m_spHandle != nullptr; }

    bool m_bDeleteMode = false;                     ///< the pen's eraser end is near
    TPathTarget m_hover;                            ///< the part under the pointer
    boost::shared_ptr<CPathObject> m_spInstallPath; ///< the path that is being drawn
    boost::shared_ptr<CVectorHandle> m_spHandle;    ///< the current drag
    CPoint m_ptPointer;                             ///< the pointer's last position
    bool m_bPointer = false;                        ///< the pointer is over the view

private:
    void SetHover(const TPathTarget& target);
    TPathSelection SelectionOf(const CPathObject& path, const CVectorLayerBuffer& layer) const;
    CRect HoverReach() const;

    CPoint m_ptPress;       ///< of the running drag
    bool m_bPen = false;    ///< its last event was the pen's
    bool m_bBeyond = false; ///< the drag has moved beyond the threshold
    CRect m_rcHoverChange;  ///< reach of hovered parts that changed, path units
    CRect m_rcMoreShown;    ///< the last DrawMore's client rectangle
    boost::weak_ptr<CVectorLayerBuffer> m_wpShownLayer;
};
