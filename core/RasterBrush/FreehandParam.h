// The settings of a freehand tool other than the brush itself.
#pragma once

#include "core/Base/Color.h"
#include "core/RasterStroke/BrushParam.h"

/// Fields are stored under the keys in ListFreehandParam.
struct TFreehandParam {
    uint32_t m_uStrokeIn = 1;   ///< length of the entry: 0 short, 1 middle, 2 long
    uint32_t m_uStrokeOut = 1;  ///< length of the exit
    uint32_t m_uSlowSmooth = 0; ///< distance added between points of a slow hand; 0 off, 4, 8 or 12
    bool m_bSlowScale = false;  ///< distances are in canvas pixels, otherwise in screen pixels
    TColor m_clrBrush = 0;
    TColor m_clrBack = 0xFFFFFF;

    friend bool operator==(const TFreehandParam&, const TFreehandParam&) = default;
};

/// Reads all fields as ReadBrushParam does.
TFreehandParam ReadFreehandParam(const TFindInt& fnFind);
/// Lists every field's value with its key.
std::vector<std::pair<std::wstring, int32_t>> ListFreehandParam(const TFreehandParam& freehand);
