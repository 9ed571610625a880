#include "core/PathToolBase/PathParam.h"

#include "core/IniConfig/IniConfig.h"

#include <type_traits>
#include <utility>
#include <vector>

namespace {

constexpr const wchar_t* SECTION = L"PathTool";

// Calls `fn(key, field, smallest value, largest value)` for every field.
template <class Param, class Function>
void ForEachField(Param& p, Function fn) {
    fn(L"DefaultWidth", p.uDefaultWidth, 1u, PATH_PARAM_WIDTH_MAX);
    fn(L"DefaultBegin", p.uDefaultBegin, uint32_t{TERM_SHARP}, uint32_t{TERM_FLAT});
    fn(L"DefaultTerm", p.uDefaultTerm, uint32_t{TERM_SHARP}, uint32_t{TERM_FLAT});
    fn(L"OpenPath", p.bOpenPath, 0u, 1u);
    fn(L"WaveEnable", p.bWaveEnable, 0u, 1u);
    fn(L"WaveStep", p.uWaveStep, WAVE_STEP_ROWS.front().uValue, WAVE_STEP_ROWS.back().uValue);
    fn(L"WaveWidth", p.uWaveWidth, WAVE_WIDTH_ROWS.front().uValue, WAVE_WIDTH_ROWS.back().uValue);
}

} // namespace

TPathParam TPathParam::Read(CIniConfig& config) {
    const auto spSection = config.GetSection(SECTION);
    TPathParam param;
    ForEachField(param, [&](const wchar_t* pszKey, auto& field, uint32_t uMin, uint32_t uMax) {
        // A negative number is larger than any limit.
        const auto u = static_cast<uint32_t>(spSection->GetInt(pszKey, static_cast<int32_t>(field)));
        if (std::is_same_v<decltype(field), bool&>)
            field = u != 0;
        else if (u >= uMin && u <= uMax)
            field = static_cast<std::remove_reference_t<decltype(field)>>(u);
    });
    return param;
}

void TPathParam::Write(CIniConfig& config) const {
    std::vector<std::pair<std::wstring, int32_t>> vValues;
    ForEachField(*this, [&](const wchar_t* pszKey, const auto& field, uint32_t, uint32_t) {
        vValues.emplace_back(pszKey, static_cast<int32_t>(field));
    });
    config.GetSection(SECTION)->SetInts(vValues);
}

void TPathParam::ApplyTo(COpenPathStream& stream) const {
    stream.SetWidth(uDefaultWidth);
    stream.SetTerm(CreateOpenPathTerm(uDefaultBegin, true));
    stream.SetTerm(CreateOpenPathTerm(uDefaultTerm, false));
    stream.SetWave(bWaveEnable, {uWaveStep, uWaveWidth});
}

boost::shared_ptr<CPathObject> TPathParam::CreatePath() const {
    if (!bOpenPath) return boost::make_shared<CClosedPathObject>();
    const auto spPath = boost::make_shared<COpenPathObject>();
    ApplyTo(spPath->GetStream());
    return spPath;
}
