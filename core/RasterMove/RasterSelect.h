// The selection tool: draws shapes that become the selection, and drags what is selected.
#pragma once

#include "core/RasterMove/RasterMove.h"
#include "core/RasterMove/SelectShape.h"

constexpr int TOOL_SELECT = 4;

inline constexpr TToolHint SELECT_HINTS[] = {
    {0, L"ドラッグ: 選択する　選択した部分をドラッグ: 動かす　クリック: 選択の解除　Shift: 加える　Alt: "
        L"除く　Ctrl: "
        L"複製"},
    {POINTER_SHIFT, L"ドラッグ: 選択範囲に加える"},
    {POINTER_ALT, L"ドラッグ: 選択範囲から除く"},
    {POINTER_CONTROL, L"ドラッグ: 選択した部分を複製する　ホイール: 拡大・縮小"}};

/// A press on a selected pixel, or with Control, drags the selected pixels (CRasterMove). Any other press,
/// and with Shift or Alt every one, begins a shape; its release adds the shape to the selection (Shift),
/// subtracts it (Alt) or replaces the selection (neither or both). What changes nothing makes no undo step.
class CRasterSelect : public CRasterMove {
public:
    static constexpr TToolInfo INFO{TOOL_SELECT, L"選択ツール", "icons/tool-select.svg", ECursor::Cross,
                                    SELECT_HINTS};

    /// Reads the settings; KeepSettings and the destructor write changes.
    explicit CRasterSelect(const TToolOutside& outside);
    ~CRasterSelect() override;

    const TToolInfo& GetInfo() const override { return INFO; }
    void KeepSettings() override;
    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags) override;
    bool OnLButtonDown(int32_t x, int32_t y, uint32_t flags) override;
    bool OnLButtonUp(int32_t x, int32_t y, uint32_t flags) override;
    /// Ends a pen's shape at its last position.
    bool OnProximityLeave() override;
    /// Arrow keys move the selected pixels, nothing without a selection.
    bool OnKeyDown(int nKey) override;
    bool OnKeyUp(int nKey) override;
    /// Drops the shape under construction, or cancels the drag.
    bool Cancel() override;
    /// Draws the shape under construction, as it will be filled.
    void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const override;
    std::optional<std::vector<CRect>> TakeOverlayChanges(const TOverlayMapper& mapper) override;
    ECursor GetCursor(CPoint pt) const override;

    ESelectShape GetShape() const { return m_nMode; }
    void SetShape(ESelectShape shape) { m_nMode = shape; }
    /// Shapes get soft edges.
    bool IsAntialias() const { return m_bAntialias; }
    void SetAntialias(bool bAntialias) { m_bAntialias = bAntialias; }

protected:
    EArrowKeys GetArrowKeys() const override { return EArrowKeys::Selected; }

private:
    bool StartsDrag(CPoint pt, uint32_t flags) const;
    bool IsSelected(CPoint pt) const;
    bool AddPoint(int32_t x, int32_t y);
    uint32_t GetHeldFlags() const;

    std::vector<CPoint> m_lstPoints; ///< canvas pixels of the shape under construction
    size_t m_nShown = 0;             ///< of these, TakeOverlayChanges has told the way to
    CPoint m_ptCursor;               ///< the pointer's last position
    ESelectShape m_nMode;
    bool m_bAntialias;
    uint32_t m_byFlags = 0;   ///< of the press
    bool m_bShift;            ///< Shift is held
    ESelectShape m_nModeRead; ///< as stored in the settings
    bool m_bAntialiasRead;
};
