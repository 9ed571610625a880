// Text in the Japanese code page of old file formats.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text in code page 932 (Shift_JIS with its extensions): '?' for each character that it lacks; what would
/// pass `nLimit` bytes is cut off in front of a character. Nothing throws but std::bad_alloc.
std::string EncodeCodePage932(std::wstring_view strText, size_t nLimit);
