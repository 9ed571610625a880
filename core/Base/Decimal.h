// Numbers as texts: those stored as whole parts of 1 (eighths of a pixel, for example), and any that a user
// types.
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// A number that is not negative as text, rounded to hundredths, halves upward; the point is a point in every
/// locale.
std::wstring FormatParts(int nValue, int nParts);

/// The nearest number of parts, halves upward, for digits (full-width ones too) with an optional point and
/// spaces around; none for any other text or more than a million.
std::optional<int> ParseParts(std::wstring_view str, int nParts);

/// The number that a text holds, to millionths: digits, a point, a sign (full-width ones too), spaces around.
/// None for any other text. Beyond a thousand million in either direction it is that limit, which fits 32
/// bits.
std::optional<double> ParseNumber(std::wstring_view str);

/// A number by a format of Boost.Format, such as "%1$+1.2f"; the point is a point in every locale.
std::wstring FormatNumber(const wchar_t* pszFormat, double dValue);
