#include "core/PathSelect/StrokeSelectParam.h"

#include "core/IniConfig/IniConfig.h"

namespace {

constexpr const wchar_t* SECTION = L"StrokeSelect";

} // namespace

TStrokeSelectParam TStrokeSelectParam::Read(CIniConfig& config) {
    const auto spSection = config.GetSection(SECTION);
    TStrokeSelectParam param;
    if (spSection->GetInt(L"Shape", STROKE_RECT) == STROKE_LASSO) param.shape = STROKE_LASSO;
    param.bTouched = spSection->GetInt(L"Touched", param.bTouched) != 0;
    param.bScaleWidths = spSection->GetInt(L"ScaleWidths", param.bScaleWidths) != 0;
    return param;
}

void TStrokeSelectParam::Write(CIniConfig& config) const {
    config.GetSection(SECTION)->SetInts(
        {{L"Shape", shape}, {L"Touched", bTouched}, {L"ScaleWidths", bScaleWidths}});
}
