// The pieces of an SVG file's text. Numbers are formed from integers, so that no locale changes them.
#pragma once

#include "core/Base/Color.h"
#include "core/Bezier/Bezier.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Appends thousandths as a decimal number without trailing zeros: 1125 as "1.125", -500 as "-0.5".
void AppendThousandths(std::string& strText, int64_t nThousandths);

/// Appends text as an attribute's value, between its quotes: in UTF-8, with entities for the characters that
/// have a meaning there, without those that XML does not allow, tabs and line breaks included.
void AppendAttribute(std::string& strText, std::wstring_view strValue);

/// Appends "#rrggbb".
void AppendColor(std::string& strText, TColor color);

/// Appends a closed curve in path units as a part of path data, in pixels.
void AppendCurve(std::string& strText, const TPolyBezier& vCurve);

/// Appends bytes in base64, padded.
void AppendBase64(std::string& strText, std::string_view strBytes);
