// The freehand tools themselves.
#pragma once

#include "core/RasterBrush/RasterBrushImpl.h"

/// Draws in the brush colour.
class CRasterBrush : public CRasterBrushImpl {
public:
    explicit CRasterBrush(const TToolOutside& outside) : CRasterBrushImpl(outside, L"RasterBrush") {}
    int GetToolId() const override { return TOOL_BRUSH; }
    const wchar_t* GetName() const override { return L"ラスタブラシ"; }
    /// X exchanges the two colours; with Ctrl or Alt it is another key.
    bool OnKeyDown(int nKey) override;

protected:
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override;
};

/// Takes paint away.
class CRasterEraser : public CRasterBrushImpl {
public:
    explicit CRasterEraser(const TToolOutside& outside) : CRasterBrushImpl(outside, L"RasterEraser") {}
    int GetToolId() const override { return TOOL_ERASER; }
    const wchar_t* GetName() const override { return L"消しゴム"; }

protected:
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override;
};

/// Draws with graphite; its line always wobbles and never sprays.
class CRasterPencil : public CRasterBrushImpl {
public:
    explicit CRasterPencil(const TToolOutside& outside);
    int GetToolId() const override { return TOOL_PENCIL; }
    const wchar_t* GetName() const override { return L"鉛筆"; }

protected:
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override;
};

/// The tool of a number, null for a number that no tool has.
boost::shared_ptr<CTools> CreateFreehandTool(int nId, const TToolOutside& outside);
