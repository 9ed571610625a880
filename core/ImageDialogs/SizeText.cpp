#include "core/ImageDialogs/SizeText.h"

#include "core/Base/Decimal.h"

std::optional<int32_t> ParseWhole(std::wstring_view str) {
    const std::optional<double> number = ParseNumber(str);
    if (!number || *number != static_cast<int32_t>(*number)) return {};
    return static_cast<int32_t>(*number);
}

std::wstring FormatSize(CSize sz) {
    return std::to_wstring(sz.cx) + L" × " + std::to_wstring(sz.cy) + L" px";
}

bool Refuse(IMessageBoxes& boxes, IWindow* pOwner, const wchar_t* pszWhy) {
    boxes.Show(pOwner, pszWhy, L"Vellumcraft", EBoxKind::Plain);
    return false;
}
