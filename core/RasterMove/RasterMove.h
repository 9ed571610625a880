// The move tool, and the base of the raster tools that work with the canvas's selection.
#pragma once

#include "core/LayerBuffer/FloatHistory.h"
#include "core/Tools/RasterToolBase.h"

inline constexpr TToolHint MOVE_HINTS[] = {
    {0, L"ドラッグ・矢印キー: 選択範囲（なければレイヤー）を動かす　Shift+矢印: 10ピクセル　Ctrl+ドラッグ: "
        L"複製"},
    {POINTER_CONTROL, L"ドラッグ: 複製を動かす"}};

/// Drags selected pixels, which float above their layer from then on. As a tool of its own it moves with any
/// press, without a selection the layer's whole content; every derived tool inherits its functions beside its
/// own.
class CRasterMove : public CRasterToolBase {
public:
    static constexpr int TOOL_ID = 5;
    static constexpr TToolInfo INFO{TOOL_ID, L"移動ツール", "icons/tool-move.svg", ECursor::Move, MOVE_HINTS};

    using CRasterToolBase::CRasterToolBase;

    const TToolInfo& GetInfo() const override { return INFO; }
    void DrawOverlay(COverlay&, const TOverlayMapper&) const override {}

    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags) override;
    bool OnLButtonDown(int32_t x, int32_t y, uint32_t flags) override { return BeginMove(x, y, flags, true); }
    bool OnLButtonUp(int32_t x, int32_t y, uint32_t flags) override;
    /// The pen left during a drag, which ends it.
    bool OnProximityLeave() override;
    /// Arrow keys move by a pixel, with Shift by ten, in the view's direction; moves that follow one another
    /// are one undo step.
    bool OnKeyDown(int nKey) override { return Nudge(nKey) || CRasterToolBase::OnKeyDown(nKey); }
    bool OnKeyRepeat(int nKey) override { return Nudge(nKey); }
    /// Puts what was dragged back.
    bool Cancel() override;
    /// Select all, deselect, and clear the selected pixels.
    bool OnCommand(int nId) override;
    bool CanCommand(int nId) const override;
    /// The clipboard takes what is selected on the active raster layer.
    bool Copy() override;
    bool Cut() override;
    bool CanCopy() const override;
    bool CanCut() const override { return CanCopy(); }

protected:
    /// Starts a drag of the layer's floating or selected pixels, with `bWhole` of the layer's whole content
    /// where nothing is selected; with Control of a copy. False when there is nothing to drag: then the rest
    /// of a pen's contact is dropped.
    bool BeginMove(int32_t x, int32_t y, uint32_t flags, bool bWhole);
    bool IsMoving() const { return m_bMoving; }
    /// The pixels that arrow keys move.
    enum class EArrowKeys {
        Nothing,
        Selected,
        Whole, ///< selected ones, without a selection the layer's whole content
    };
    virtual EArrowKeys GetArrowKeys() const { return EArrowKeys::Whole; }

private:
    // Moves by an arrow key's step; false for other keys, and when there is nothing to move.
    bool Nudge(int nKey);
    bool HasTarget(bool bWhole) const;
    void Lift();
    void ShowAt(CPoint ptDelta);
    void Finish();
    void EndMove();
    void Revert();
    void Forget();

    CPoint m_ptDown;            ///< canvas pixel of the press
    CPoint m_ptMove;            ///< canvas pixel of the pointer
    uint32_t m_byDragFlags = 0; ///< POINTER_ flags of the press
    bool m_bMoving = false;
    bool m_bCut = false;                          ///< the pixels leave their place
    boost::shared_ptr<CFloatingPixels> m_spFloat; ///< as it was when the drag began to move
    std::unique_ptr<CFloatDrop> m_pDrop;          ///< other pixels that had to be merged for it
    boost::shared_ptr<CRasterMoveHistory> m_spHistory;
    boost::weak_ptr<CHistory> m_wpNudge; ///< the undo step of the last arrow key
};
