// The stroke selection tool: selects paths of a vector layer, and moves, scales and turns them together.
#pragma once

#include "core/PathCtlPtHandle/VectorTool.h"
#include "core/PathObject/PathObjects.h"
#include "core/PathSelect/StrokeSelectParam.h"
#include "core/PathSelect/StrokesDrag.h"

#include <memory>

constexpr int TOOL_STROKE_SELECT = 12;

inline constexpr TToolHint STROKE_SELECT_HINTS[] = {
    {0, L"クリック・ドラッグ: 線を選ぶ　選んだ線をドラッグ: 動かす　枠の印: 拡大・縮小　角の外: 回転　Shift: "
        L"加える　Alt: 除く"},
    {POINTER_SHIFT, L"クリック・ドラッグ: 選択に加える　枠の印: 縦横比を保つ　角の外: 15度ごとに回転"},
    {POINTER_ALT, L"クリック・ドラッグ: 選択から除く　枠の印: 中心から拡大・縮小"},
    {POINTER_CONTROL, L"ホイール: 拡大・縮小"}};

/// The selection is the layer's (CVectorLayerBuffer::GetSelectedPaths). A press on a handle of the box around
/// it, near its corners or inside drags all selected strokes. Other presses select: a click the stroke under
/// the pointer, a drag from an empty place the strokes in a shape; alone they replace the selection, with
/// Shift they add (a click on a selected stroke takes it away), with Alt they take away.
class CStrokeSelect : public CVectorTool {
public:
    static constexpr TToolInfo INFO{TOOL_STROKE_SELECT, L"線選択", "icons/tool-stroke-select.svg",
                                    ECursor::Cross, STROKE_SELECT_HINTS};

    /// Reads the settings; KeepSettings and the destructor write changes.
    explicit CStrokeSelect(const TToolOutside& outside);
    ~CStrokeSelect() override;

    const TToolInfo& GetInfo() const override { return INFO; }
    void KeepSettings() override;
    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t flags) override;
    bool OnLButtonDown(int32_t x, int32_t y, uint32_t flags) override;
    bool OnLButtonUp(int32_t x, int32_t y, uint32_t flags) override;
    /// Ends a pen's drag at its last position.
    bool OnProximityLeave() override;
    bool OnPointerOver(CPoint pt) override;
    bool OnMouseLeave() override;
    /// Selects nothing. False when nothing was selected.
    bool OnEscape() override;
    /// Arrow keys move by a pixel, with Shift by ten, moves that follow one another being one undo step;
    /// Control+A, Control+D and Delete.
    bool OnKeyDown(int nKey) override;
    bool OnKeyUp(int nKey) override;
    bool OnKeyRepeat(int nKey) override { return Nudge(nKey); }
    /// Puts the strokes back, or drops the shape that is drawn.
    bool Cancel() override;
    /// Select all, deselect, and delete the selected strokes.
    bool OnCommand(int nId) override;
    bool CanCommand(int nId) const override;
    /// The clipboard takes the selected strokes. Strokes from it are added to the active vector layer, or to
    /// a new one, and selected; pictures are pasted as by other tools.
    bool Copy() override;
    bool Cut() override;
    bool Paste() override;
    bool CanCopy() const override;
    bool CanCut() const override { return CanCopy(); }
    bool CanPaste() const override;
    void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const override;
    CRect GetOverlayRect(const TOverlayMapper& mapper) const override;
    std::optional<std::vector<CRect>> TakeOverlayChanges(const TOverlayMapper& mapper) override;
    ECursor GetCursor(CPoint pt) const override;

    /// The settings, which the pane edits in place.
    TStrokeSelectParam& GetParam() { return m_param; }
    /// The selected strokes of the active layer, the lowest first; without filled shapes.
    std::vector<boost::shared_ptr<COpenPathObject>> GetStrokes() const;
    /// Changes the selected strokes by a function, one undo step; none when nothing changes. With `bFold`
    /// such changes that follow one another are one step. Raises refused_error, and changes nothing, when a
    /// stroke cannot be stored.
    void ChangeStrokes(const boost::function<void(COpenPathStream&)>& fnChange, bool bFold);
    /// The box around the committed shapes of the selected paths, path units; empty for none.
    CRect GetBox() const;

private:
    static constexpr const wchar_t* LABEL_MOVE = L"線の移動";
    using TLayerRef = boost::shared_ptr<CVectorLayerBuffer>;
    using TPathRef = boost::shared_ptr<CPathObject>;

    /// The things that a press takes hold of: a part of the box, else the stroke, else an empty place.
    struct TPress {
        EBoxPart part = BOX_NONE;
        TPathRef spPath;
    };
    /// Changes that may be one undo step with those before.
    enum class EFold { None, Move, Values };

    static const wchar_t* LabelOf(EBoxPart part);
    TPress FindPress(const CVectorLayerBuffer& layer, CPoint pt, uint32_t flags) const;
    EBoxPart FindPart(CPoint pt, uint32_t flags) const;
    TPathRef FindStroke(const CVectorLayerBuffer& layer, CPoint pt, uint32_t flags) const;
    void RefreshHover();
    void BeginDrag(const TLayerRef& spLayer);
    bool EndDrag(bool bCommit);
    void EndPress();
    void Click(CVectorLayerBuffer& layer);
    void SelectRegion(CVectorLayerBuffer& layer);
    void Combine(CVectorLayerBuffer& layer, const TStrokes& vPaths);
    void Select(CVectorLayerBuffer& layer, const TStrokes& vPaths);
    bool SelectAllStrokes();
    bool Deselect();
    bool DeleteSelected(const wchar_t* pszLabel);
    bool Nudge(int nKey);
    void Register(const CStrokesBefore& before, const wchar_t* pszLabel, EFold fold);
    TStrokes GetSelected() const;
    bool IsDrawingShape() const;
    std::vector<CPoint> GetShape(const TOverlayMapper& mapper) const;
    std::array<CPoint, BOX_HANDLES> GetHandles(const TOverlayMapper& mapper) const;
    CRect GetBoxRect(const TOverlayMapper& mapper) const;
    CRect GetShapeRect(const TOverlayMapper& mapper) const;

    TStrokeSelectParam m_param;
    TStrokeSelectParam m_kept; ///< as last read or written
    TPress m_press;
    uint32_t m_uPressFlags = 0;
    uint32_t m_uFlags = 0; ///< of the last event
    CPoint m_ptPress;
    CPoint m_ptPointer;           ///< the pointer's last position
    bool m_bPointer = false;      ///< the pointer is over the view
    bool m_bBeyond = false;       ///< the drag has moved beyond the threshold
    std::vector<CPoint> m_vLasso; ///< the way of the shape that is drawn
    std::unique_ptr<CStrokesDrag> m_pDrag;
    CRect m_rcDragBox; ///< the box when the drag began
    boost::weak_ptr<CPathObject> m_wpHover;
    EBoxPart m_hoverPart = BOX_NONE;
    boost::weak_ptr<CStrokesChangeHistory> m_wpFoldable; ///< the last action that a change may be folded into
    EFold m_fold = EFold::None;                          ///< its kind
    CRect m_rcHoverChange;                               ///< path units
    /// The box as last computed: a pointer that only moves must not visit all strokes.
    struct TBox {
        boost::weak_ptr<CVectorLayerBuffer> wpLayer;
        uint32_t uChanges = 0;
        CRect rc;
    };
    mutable TBox m_box;
    CRect m_rcBoxShown; ///< client pixels
    EBoxPart m_partShown = BOX_NONE;
    CRect m_rcShapeShown; ///< client pixels
    boost::weak_ptr<CVectorLayerBuffer> m_wpShownLayer;
};
