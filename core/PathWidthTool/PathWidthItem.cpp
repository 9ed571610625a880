#include "core/PathWidthTool/PathWidthItem.h"

#include <algorithm>

namespace {

constexpr int MAX_COEF = 9999;

struct TOperation {
    const wchar_t* pszName;
    const wchar_t* pszSign; ///< before the coefficient; null without one
    EWidthKind kind;
};

constexpr TOperation OPERATIONS[WIDTH_TYPES] = {
    {L"1点", L"x", WIDTH_KIND_POINTS},     {L"2点", L"x", WIDTH_KIND_POINTS},
    {L"3点", L"x", WIDTH_KIND_POINTS},     {L"4点", L"x", WIDTH_KIND_POINTS},
    {L"乗算", L"x", WIDTH_KIND_CHANGE},    {L"加算", L"+", WIDTH_KIND_CHANGE},
    {L"削除", nullptr, WIDTH_KIND_ERASE},  {L"透明化", nullptr, WIDTH_KIND_CUT},
    {L"不透明度", L"x", WIDTH_KIND_ALPHA},
};

} // namespace

const wchar_t* GetWidthName(int nType) { return OPERATIONS[nType].pszName; }

EWidthKind KindOf(int nType) { return IsSupported(nType) ? OPERATIONS[nType].kind : WIDTH_KIND_NONE; }

TPathWidthItem FirstOf(EWidthKind kind) {
    const auto it = std::ranges::find(OPERATIONS, kind, &TOperation::kind);
    return {static_cast<int>(it - std::begin(OPERATIONS)), 10};
}

bool HasCoef(int nType) { return IsSupported(nType) && OPERATIONS[nType].pszSign; }

std::wstring CoefText(int nCoef) { return std::to_wstring(nCoef / 10) + L"." + std::to_wstring(nCoef % 10); }

std::wstring ItemText(const TPathWidthItem& item) {
    if (!IsSupported(item.nType)) return L"unsupported";
    const TOperation& operation = OPERATIONS[item.nType];
    if (!operation.pszSign) return operation.pszName;
    return std::wstring(operation.pszName) + L" " + operation.pszSign + CoefText(item.nCoef);
}

TPathWidthItem Normalized(TPathWidthItem item) {
    const bool bPlain = IsSupported(item.nType) && !HasCoef(item.nType);
    item.nCoef = bPlain ? 0 : std::clamp(item.nCoef, 0, MAX_COEF);
    return item;
}
