// The parameters of the freehand tools, and their storage in the settings.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Largest brush size, in half pixels.
constexpr uint32_t MAX_BRUSH_RADIUS = 2000;

/// The parameters that a stroke copies from its tool when it begins. Fields are named after the settings'
/// keys.
struct TBrushParam {
    uint8_t WaveSmooth = 1;   ///< control points between two wobble targets, minus one; smooths the wobble
    uint32_t WaveDistMin = 0; ///< wobble of thin lines
    uint32_t WaveDistMax = 0; ///< wobble of thick lines
    bool WaveEnable = false;
    uint8_t CurveStrength = 2; ///< smoothing window in control points, 0 for none
    uint32_t BrushRadius = 4;  ///< in half pixels, 0 to MAX_BRUSH_RADIUS
    uint8_t BrushAlpha = 255;
    uint8_t BlurLevel = 0; ///< percent of the radius that may be solid core
    bool PressRadius = true;
    bool PressAlpha = false;
    uint8_t AvailInput = 100;  ///< percent of the curve at which the radius is full
    uint8_t AvailAlpha = 100;  ///< percent of the curve at which the opacity is full
    uint8_t MinRadiusRate = 0; ///< floor of the radius, percent
    uint8_t MinAlphaRate = 0;  ///< floor of the opacity, percent
    uint32_t PressCurve1x = 0; ///< handles of the pressure curve, percent; y from the top
    uint32_t PressCurve1y = 100;
    uint32_t PressCurve2x = 100;
    uint32_t PressCurve2y = 0;
    uint32_t Spray = 0;         ///< scatter of a stamp in percent of the radius
    uint8_t AltitParam = 0;     ///< how far a tilted pencil spreads, 0 (not) to 5
    uint8_t PaperRoughness = 0; ///< 0 to 7
    uint8_t PencilHardness = 0; ///< 0 (soft) to 4
    uint8_t PencilTexture = 0;  ///< 0 (none) to 3
    uint8_t Preset = 0;         ///< always 0
    bool AntiSplit = false;     ///< a wobbling pencil line widens instead of splitting

    friend bool operator==(const TBrushParam&, const TBrushParam&) = default;
};

/// Returns the stored value of a key, or the default.
using TFindInt = std::function<int32_t(const std::wstring& strKey, int32_t nDefault)>;

/// Reads all fields. Missing values take their defaults, numbers are clamped to their ranges; a switch is on
/// for any value but 0.
TBrushParam ReadBrushParam(const TFindInt& fnFind);
/// Lists every field's value with its key.
std::vector<std::pair<std::wstring, int32_t>> ListBrushParam(const TBrushParam& param);
