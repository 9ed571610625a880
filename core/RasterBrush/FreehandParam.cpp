#include "core/RasterBrush/FreehandParam.h"

#include <algorithm>

namespace {

constexpr int32_t ANY_COLOR = 0xFFFFFF;

// Calls `fn(key, field, largest value)` for every field; the smallest value is 0.
template <class Param, class Function>
void ForEachField(Param& p, Function fn) {
    fn(L"StrokeIn", p.m_uStrokeIn, 2);
    fn(L"StrokeOut", p.m_uStrokeOut, 2);
    fn(L"SlowSmooth", p.m_uSlowSmooth, 12);
    fn(L"SlowScale", p.m_bSlowScale, 1);
    fn(L"BrushColor", p.m_clrBrush, ANY_COLOR);
    fn(L"BackColor", p.m_clrBack, ANY_COLOR);
}

} // namespace

TFreehandParam ReadFreehandParam(const TFindInt& fnFind) {
    TFreehandParam freehand;
    ForEachField(freehand, [&](const wchar_t* pszKey, auto& field, int32_t nMax) {
        const int32_t n = fnFind(pszKey, static_cast<int32_t>(field));
        if constexpr (std::is_same_v<std::remove_reference_t<decltype(field)>, bool>)
            field = n != 0;
        else // the upper byte of a colour has no meaning
            field = static_cast<uint32_t>(nMax == ANY_COLOR ? n & ANY_COLOR : std::clamp(n, 0, nMax));
    });
    return freehand;
}

std::vector<std::pair<std::wstring, int32_t>> ListFreehandParam(const TFreehandParam& freehand) {
    std::vector<std::pair<std::wstring, int32_t>> vValues;
    ForEachField(freehand, [&](const wchar_t* pszKey, const auto& field, int32_t) {
        vValues.emplace_back(pszKey, static_cast<int32_t>(field));
    });
    return vValues;
}
