// Run-length coding of a row of bytes, as picture files use it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Appends `nCount` bytes in packets of a count byte n and what it counts: n + 1 bytes as they are (0 to
/// 126), or one byte 257 - n times (129 to 255).
void AppendPackBits(std::string& strBytes, const uint8_t* pRow, size_t nCount);
