// The output buffer of a layered PSD file; all numbers big-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Appends only. A file over 32 bits raises refused_error.
class CPsdBytes {
public:
    void WriteByte(uint8_t u) { *Extend(1, 0) = u; }
    void WriteInt16(uint16_t u);
    void WriteInt32(uint32_t u);
    void WriteText(std::string_view str);
    /// A length byte and the text, at most 255 bytes of it, padded to a multiple of four.
    void WritePascal(std::string_view str);
    /// Appends `nCount` bytes of a value; valid until the next write.
    uint8_t* Extend(size_t nCount, uint8_t uFill);

    /// Reserves a 32-bit length and returns its offset.
    size_t BeginLength();
    /// Sets the length to the count of the bytes written since, including zero padding to a multiple of
    /// `nAlign`.
    void EndLength(size_t nAt, size_t nAlign = 1);
    void SetInt32(size_t nAt, uint32_t u);

    size_t GetSize() const { return m_strBytes.size(); }
    const std::string& GetBytes() const { return m_strBytes; }

private:
    std::string m_strBytes; ///< the type that a file store accepts
};
