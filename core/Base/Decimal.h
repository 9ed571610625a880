// Numbers with two decimals, stored as whole parts of 1 (eighths of a pixel, for example).
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// A number that is not negative as text, rounded to hundredths, halves upward; the point is a point in every
/// locale.
std::wstring FormatParts(int nValue, int nParts);

/// The nearest number of parts, halves upward, for digits with an optional point and spaces around; none for
/// any other text or more than a million.
std::optional<int> ParseParts(std::wstring_view str, int nParts);
