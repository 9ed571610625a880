// The common base of the three freehand tools: settings, cursor, keys.
#pragma once

#include "core/RasterBrush/RasterBrushBase.h"

#include <string>

/// Reads the settings from the tool's own section on construction; KeepSettings and the destructor write
/// changes.
class CRasterBrushImpl : public CRasterBrushBase {
public:
    /// `strSection` is the tool's name below "BrushParam".
    CRasterBrushImpl(const TToolOutside& outside, const std::wstring& strSection);
    ~CRasterBrushImpl() override;

    /// Alt picks colours while it is held.
    bool OnKeyDown(int nKey) override;
    bool OnKeyUp(int nKey) override;
    /// Draws a circle of the brush's size, inverting, if it is large enough to be seen; while picking
    /// colours, the pick icon.
    void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const override;
    void KeepSettings() override;
    const std::wstring& GetSection() const override { return m_strSection; }

protected:
    /// A stroke's setup, without the parts that depend on the tool.
    TStrokeSetup MakeSetup(const CCanvasBuffer& canvas) const;
    /// Fine soft lines are drawn at twice the resolution.
    bool WantsDoublePlane() const { return m_param.BlurLevel >= 51 && m_param.BrushRadius < 32; }

private:
    std::wstring m_strSection;
    TBrushParam m_paramRead; ///< as stored in the settings
    TFreehandParam m_freehandRead;
};
