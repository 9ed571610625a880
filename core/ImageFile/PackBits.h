// PackBits run-length coding of a row of bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Appends `nCount` bytes as packets with a header byte n: n + 1 literal bytes (n of 0 to 126), or one byte
/// repeated 257 - n times (129 to 255).
void AppendPackBits(std::string& strBytes, const uint8_t* pRow, size_t nCount);
