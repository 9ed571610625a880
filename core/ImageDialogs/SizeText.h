// Sizes of the canvas as the user types and reads them.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/Dialogs.h"

#include <optional>
#include <string>
#include <string_view>

/// A whole number as ParseNumber reads it, within a thousand million; none for any other text.
std::optional<int32_t> ParseWhole(std::wstring_view str);

/// "800 × 600 px".
std::wstring FormatSize(CSize sz);

/// Tells why input is refused. Always false, for OnOk.
bool Refuse(IMessageBoxes& boxes, IWindow* pOwner, const wchar_t* pszWhy);

constexpr wchar_t NO_NUMBER[] = L"数字を入力してください。";
