// The bytes of a layered PSD file as they are put together; all numbers big-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Grows at its end. A file over 32 bits raises refused_error.
class CPsdBytes {
public:
    void WriteByte(uint8_t u) { *Extend(1, 0) = u; }
    void WriteInt16(uint16_t u);
    void WriteInt32(uint32_t u);
    void WriteText(std::string_view str);
    /// A length byte and the text, at most 255 bytes of it, padded to a multiple of four.
    void WritePascal(std::string_view str);
    /// Adds `nCount` bytes of a value; valid until the next write.
    uint8_t* Extend(size_t nCount, uint8_t uFill);

    /// Writes a 32-bit length that is not known yet and answers where it stands.
    size_t BeginLength();
    /// Sets it to the count of all that was written since, zeros added to a multiple of `nAlign` counted.
    void EndLength(size_t nAt, size_t nAlign = 1);
    void SetInt32(size_t nAt, uint32_t u);

    size_t GetSize() const { return m_strBytes.size(); }
    const std::string& GetBytes() const { return m_strBytes; }

private:
    std::string m_strBytes; ///< what a file store takes
};
