#include "core/PathPen/PathPenParam.h"

#include "core/IniConfig/IniConfig.h"

namespace {

constexpr const wchar_t* SECTION = L"PathPen";
constexpr const wchar_t* TOLERANCE = L"Tolerance";

} // namespace

TPathPenParam TPathPenParam::Read(CIniConfig& config) {
    TPathPenParam param;
    const int32_t nTolerance =
        config.GetSection(SECTION)->GetInt(TOLERANCE, static_cast<int32_t>(param.uTolerance));
    if (nTolerance >= int32_t{MIN_TOLERANCE} && nTolerance <= int32_t{MAX_TOLERANCE})
        param.uTolerance = static_cast<uint32_t>(nTolerance);
    return param;
}

void TPathPenParam::Write(CIniConfig& config) const {
    config.GetSection(SECTION)->SetInts({{TOLERANCE, static_cast<int32_t>(uTolerance)}});
}
