// Text inside the application is wide: UTF-32 or, where wchar_t has 16 bits, UTF-16. Files use UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Wide text of UTF-8 bytes. Ill-formed sequences become U+FFFD, so that any input is accepted.
std::wstring FromUtf8(std::string_view strBytes);

/// UTF-8 bytes of wide text. Code points that cannot be encoded (lone surrogates, beyond U+10FFFF) become
/// U+FFFD.
std::string ToUtf8(std::wstring_view strText);

/// Appends a code point, which UTF-16 needs two characters for from U+10000 on.
void AppendCodePoint(std::wstring& strText, uint32_t uCode);

/// True when both names are equal, ignoring the case of the letters A to Z.
bool EqualNoCase(std::string_view a, std::string_view b);
bool EqualNoCase(std::wstring_view a, std::wstring_view b);

/// The file name's extension with its dot (".png"), empty when the last path component has none.
std::wstring_view ExtensionOf(std::wstring_view strPath);

/// The last component of a path.
std::wstring_view FileNameOf(std::wstring_view strPath);
