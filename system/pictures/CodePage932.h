// Text in the Japanese code page of old file formats.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Encodes text in code page 932 (Shift_JIS with its extensions): '?' for each character that it lacks. Cut
/// at `nLimit` bytes, never inside a character. Throws nothing but std::bad_alloc.
std::string EncodeCodePage932(std::wstring_view strText, size_t nLimit);
