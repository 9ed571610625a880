// The freehand tools: brush, eraser and pencil.
#pragma once

#include "core/RasterBrush/RasterBrushImpl.h"

/// The numbers of the freehand tools.
enum EFreehandTool : int {
    TOOL_BRUSH = 2,
    TOOL_ERASER = 3,
    TOOL_PENCIL = 8,
};

/// Hints of the freehand tools; Control and Alt mean the same for all of them.
inline constexpr TToolHint PICK_HINT{POINTER_ALT, L"クリック: 色を拾う"};
inline constexpr TToolHint ZOOM_HINT{POINTER_CONTROL, L"ホイール: 拡大・縮小"};
inline constexpr TToolHint BRUSH_HINTS[] = {
    {0, L"ドラッグ: 描く　Alt: 色を拾う　X: 色の入れ替え　スペース: 画面を動かす　Ctrl+ホイール: 拡大・縮小"},
    PICK_HINT,
    ZOOM_HINT};
inline constexpr TToolHint ERASER_HINTS[] = {
    {0, L"ドラッグ: 消す　スペース: 画面を動かす　Ctrl+ホイール: 拡大・縮小"}, PICK_HINT, ZOOM_HINT};
inline constexpr TToolHint PENCIL_HINTS[] = {
    {0, L"ドラッグ: 描く　Alt: 色を拾う　スペース: 画面を動かす　Ctrl+ホイール: 拡大・縮小"},
    PICK_HINT,
    ZOOM_HINT};

/// Draws in the brush colour.
class CRasterBrush : public CRasterBrushImpl {
public:
    static constexpr TToolInfo INFO{TOOL_BRUSH, L"ラスタブラシ", "icons/tool-brush.svg", ECursor::Cross,
                                    BRUSH_HINTS};

    explicit CRasterBrush(const TToolOutside& outside) : CRasterBrushImpl(outside, L"RasterBrush") {}
    const TToolInfo& GetInfo() const override { return INFO; }
    /// X swaps the two colours; with Ctrl or Alt it does not.
    bool OnKeyDown(int nKey) override;

protected:
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override;
};

/// Erases paint.
class CRasterEraser : public CRasterBrushImpl {
public:
    static constexpr TToolInfo INFO{TOOL_ERASER, L"消しゴム", "icons/tool-eraser.svg", ECursor::Cross,
                                    ERASER_HINTS};

    explicit CRasterEraser(const TToolOutside& outside) : CRasterBrushImpl(outside, L"RasterEraser") {}
    const TToolInfo& GetInfo() const override { return INFO; }
    bool DrawsInOwnColor() const override { return false; }

protected:
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override;
};

/// Draws with graphite; always wobbles and never sprays.
class CRasterPencil : public CRasterBrushImpl {
public:
    static constexpr TToolInfo INFO{TOOL_PENCIL, L"鉛筆", "icons/tool-pencil.svg", ECursor::Cross,
                                    PENCIL_HINTS};

    explicit CRasterPencil(const TToolOutside& outside);
    const TToolInfo& GetInfo() const override { return INFO; }

protected:
    void Constrain() override;
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override;
};
