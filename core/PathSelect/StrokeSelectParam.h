// The settings of the stroke selection tool.
#pragma once

class CIniConfig;

/// The shape that a drag from an empty place draws; the numbers of the settings.
enum EStrokeShape : int { STROKE_RECT, STROKE_LASSO };

/// Values of the settings section "StrokeSelect".
struct TStrokeSelectParam {
    EStrokeShape shape = STROKE_RECT;
    bool bTouched = false;    ///< strokes that lie inside in part are selected too
    bool bScaleWidths = true; ///< scaling scales the widths too

    /// Reads the section; unknown shapes are replaced by the default.
    static TStrokeSelectParam Read(CIniConfig& config);
    void Write(CIniConfig& config) const;

    friend bool operator==(const TStrokeSelectParam&, const TStrokeSelectParam&) = default;
};
