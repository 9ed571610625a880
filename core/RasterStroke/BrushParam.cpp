#include "core/RasterStroke/BrushParam.h"

#include <algorithm>
#include <type_traits>

namespace {

constexpr int32_t ANY_BYTE = 255;
constexpr int32_t PERCENT = 100;
constexpr int32_t MAX_SPRAY = 1000;

// Calls `fn(key, field, smallest value, largest value)` for every field. The limits prevent endless strokes
// from a damaged file; the panels' ranges are much smaller.
template <class Param, class Function>
void ForEachField(Param& p, Function fn) {
    fn(L"WaveSmooth", p.WaveSmooth, 0, ANY_BYTE);
    fn(L"WaveDistMin", p.WaveDistMin, 0, ANY_BYTE);
    fn(L"WaveDistMax", p.WaveDistMax, 0, ANY_BYTE);
    fn(L"WaveEnable", p.WaveEnable, 0, 1);
    fn(L"CurveStrength", p.CurveStrength, 0, ANY_BYTE);
    fn(L"BrushRadius", p.BrushRadius, 1, static_cast<int32_t>(MAX_BRUSH_RADIUS));
    fn(L"BrushAlpha", p.BrushAlpha, 0, ANY_BYTE);
    fn(L"BlurLevel", p.BlurLevel, 0, PERCENT);
    fn(L"PressRadius", p.PressRadius, 0, 1);
    fn(L"PressAlpha", p.PressAlpha, 0, 1);
    fn(L"AvailInput", p.AvailInput, 0, PERCENT);
    fn(L"AvailAlpha", p.AvailAlpha, 0, PERCENT);
    fn(L"MinRadiusRate", p.MinRadiusRate, 0, PERCENT);
    fn(L"MinAlphaRate", p.MinAlphaRate, 0, PERCENT);
    fn(L"PressCurve1x", p.PressCurve1x, 0, PERCENT);
    fn(L"PressCurve1y", p.PressCurve1y, 0, PERCENT);
    fn(L"PressCurve2x", p.PressCurve2x, 0, PERCENT);
    fn(L"PressCurve2y", p.PressCurve2y, 0, PERCENT);
    fn(L"Spray", p.Spray, 0, MAX_SPRAY);
    fn(L"AltitParam", p.AltitParam, 0, 5);
    fn(L"PaperRoughness", p.PaperRoughness, 0, 7);
    fn(L"PencilHardness", p.PencilHardness, 0, 4);
    fn(L"PencilTexture", p.PencilTexture, 0, 3);
    fn(L"Preset", p.Preset, 0, ANY_BYTE);
    fn(L"AntiSplit", p.AntiSplit, 0, 1);
}

} // namespace

TBrushParam ReadBrushParam(const TFindInt& fnFind) {
    TBrushParam param;
    ForEachField(param, [&](const wchar_t* pszKey, auto& field, int32_t nMin, int32_t nMax) {
        using T = std::remove_reference_t<decltype(field)>;
        const int32_t n = fnFind(pszKey, static_cast<int32_t>(field));
        if constexpr (std::is_same_v<T, bool>)
            field = n != 0;
        else
            field = static_cast<T>(std::clamp(n, nMin, nMax));
    });
    param.Preset = 0;
    return param;
}

std::vector<std::pair<std::wstring, int32_t>> ListBrushParam(const TBrushParam& param) {
    std::vector<std::pair<std::wstring, int32_t>> vValues;
    ForEachField(param, [&](const wchar_t* pszKey, const auto& field, int32_t, int32_t) {
        vValues.emplace_back(pszKey, static_cast<int32_t>(field));
    });
    return vValues;
}
