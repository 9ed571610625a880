// The pen: a freehand stroke on a vector layer, which becomes a path.
#pragma once

#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/PathPen/PathPenParam.h"
#include "core/RasterBrush/RasterBrushImpl.h"

inline constexpr TToolHint PEN_HINTS[] = {
    {0, L"ドラッグ: 描く　描いた線はあとから直せます　スペース: 画面を動かす"},
    {POINTER_CONTROL, L"ホイール: 拡大・縮小"}};

/// Draws as the brush does, in the layer's colour and with a hard edge. At pen-up the line becomes a path on
/// top of the layer, within the tolerance of what was drawn, and the layer's selected path; one undo step.
class CPathPen : public CRasterBrushImpl {
public:
    static constexpr int TOOL_ID = 10;
    static constexpr TToolInfo INFO{TOOL_ID, L"ペン", "icons/tool-pen.svg", ECursor::Cross, PEN_HINTS};

    explicit CPathPen(const TToolOutside& outside);
    ~CPathPen() override;

    const TToolInfo& GetInfo() const override { return INFO; }
    bool IsEnabled() const override { return !GetRefusal(); }
    const wchar_t* GetRefusal() const override;
    /// The keys of pixels, of selections and of picking colours have no meaning here.
    bool OnKeyDown(int) override { return false; }
    bool OnKeyUp(int) override { return false; }
    bool CanCommand(int nId) const override;
    void KeepSettings() override;
    bool DrawsInOwnColor() const override { return false; }
    bool HasSoftEdge() const override { return false; }

    /// The settings of the conversion, which the pane edits in place.
    TPathPenParam& GetPenParam() { return m_penParam; }

protected:
    void Constrain() override;
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override;
    void ShowStroke(const boost::shared_ptr<CRasterStroke>& spStroke) override;
    void FinishStroke(const boost::shared_ptr<CRasterStroke>& spStroke, const TStrokeInput& input) override;

private:
    boost::shared_ptr<CVectorLayerBuffer> GetVectorLayer() const;

    TPathPenParam m_penParam;
    TPathPenParam m_penParamRead; ///< as stored in the settings
};
