#include "core/RasterStroke/BrushParam.h"

#include "core/IniConfig/IniConfig.h"

#include <algorithm>

namespace {

constexpr int32_t ANY_BYTE = 255;
constexpr int32_t PERCENT = 100;
constexpr int32_t MAX_SCATTER = 1000;

// Calls `fn(key, field, largest value)` for every field.
template <class Param, class Function>
void ForEachField(Param& p, Function fn) {
    fn(L"WaveSmooth", p.WaveSmooth, ANY_BYTE);
    fn(L"WaveDistMin", p.WaveDistMin, MAX_SCATTER);
    fn(L"WaveDistMax", p.WaveDistMax, MAX_SCATTER);
    fn(L"WaveEnable", p.WaveEnable, 1);
    fn(L"CurveStrength", p.CurveStrength, ANY_BYTE);
    fn(L"BrushRadius", p.BrushRadius, static_cast<int32_t>(MAX_BRUSH_RADIUS));
    fn(L"BrushAlpha", p.BrushAlpha, ANY_BYTE);
    fn(L"BlurLevel", p.BlurLevel, PERCENT);
    fn(L"PressRadius", p.PressRadius, 1);
    fn(L"PressAlpha", p.PressAlpha, 1);
    fn(L"AvailInput", p.AvailInput, PERCENT);
    fn(L"AvailAlpha", p.AvailAlpha, PERCENT);
    fn(L"MinRadiusRate", p.MinRadiusRate, PERCENT);
    fn(L"MinAlphaRate", p.MinAlphaRate, PERCENT);
    fn(L"PressCurve1x", p.PressCurve1x, PERCENT);
    fn(L"PressCurve1y", p.PressCurve1y, PERCENT);
    fn(L"PressCurve2x", p.PressCurve2x, PERCENT);
    fn(L"PressCurve2y", p.PressCurve2y, PERCENT);
    fn(L"Spray", p.Spray, MAX_SCATTER);
    fn(L"AltitParam", p.AltitParam, 5);
    fn(L"PaperRoughness", p.PaperRoughness, 7);
    fn(L"PencilHardness", p.PencilHardness, 4);
    fn(L"PencilTexture", p.PencilTexture, 3);
    fn(L"Preset", p.Preset, ANY_BYTE);
    fn(L"AntiSplit", p.AntiSplit, 1);
}

boost::shared_ptr<CIniConfigData> SectionOf(CIniConfig& config, const std::wstring& strTool) {
    return config.GetSection(L"BrushParam")->GetSection(strTool);
}

} // namespace

TBrushParam ReadBrushParam(CIniConfig& config, const std::wstring& strTool) {
    const auto spSection = SectionOf(config, strTool);
    TBrushParam param;
    ForEachField(param, [&](const wchar_t* pszKey, auto& field, int32_t nMax) {
        const int32_t n = spSection->GetInt(pszKey, static_cast<int32_t>(field));
        field = static_cast<std::remove_reference_t<decltype(field)>>(std::clamp(n, 0, nMax));
    });
    param.Preset = 0;
    return param;
}

void WriteBrushParam(CIniConfig& config, const std::wstring& strTool, const TBrushParam& param) {
    const auto spSection = SectionOf(config, strTool);
    ForEachField(param, [&](const wchar_t* pszKey, const auto& field, int32_t) {
        spSection->SetInt(pszKey, static_cast<int32_t>(field));
    });
}
