// What the three freehand tools share beyond their input: settings, cursor, keys.
#pragma once

#include "core/RasterBrush/RasterBrushBase.h"

#include <string>

/// Settings are read from the tool's own section when it is made; what has changed is written by KeepSettings
/// and when it goes.
class CRasterBrushImpl : public CRasterBrushBase {
public:
    /// `strSection` is the tool's name below "BrushParam".
    CRasterBrushImpl(const TToolOutside& outside, const std::wstring& strSection);
    ~CRasterBrushImpl() override;

    /// Alt takes colours while it is held.
    bool OnKeyDown(int nKey) override;
    bool OnKeyUp(int nKey) override;
    /// A circle of the brush's size that inverts what lies under it, where it is large enough to be seen;
    /// while colours are taken the pick icon.
    void DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const override;
    void KeepSettings() override;

protected:
    /// A stroke's setup with everything that does not depend on the tool.
    TStrokeSetup MakeSetup(const CCanvasBuffer& canvas) const;
    /// Fine soft lines are drawn at twice the resolution.
    bool WantsDoublePlane() const { return m_param.BlurLevel >= 51 && m_param.BrushRadius < 32; }

private:
    std::wstring m_strSection;
    TBrushParam m_paramRead; ///< what the settings hold
    TFreehandParam m_freehandRead;
};
