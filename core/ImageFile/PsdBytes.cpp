#include "core/ImageFile/PsdBytes.h"

#include "core/Base/Failure.h"

#include <algorithm>
#include <limits>

void CPsdBytes::WriteInt16(uint16_t u) {
    WriteByte(static_cast<uint8_t>(u >> 8));
    WriteByte(static_cast<uint8_t>(u));
}

void CPsdBytes::WriteInt32(uint32_t u) { SetInt32(BeginLength(), u); }

void CPsdBytes::WriteText(std::string_view str) { std::copy(str.begin(), str.end(), Extend(str.size(), 0)); }

void CPsdBytes::WritePascal(std::string_view str) {
    str = str.substr(0, 255);
    WriteByte(static_cast<uint8_t>(str.size()));
    WriteText(str);
    Extend(3 - str.size() % 4, 0);
}

uint8_t* CPsdBytes::Extend(size_t nCount, uint8_t uFill) {
    const size_t nOld = m_strBytes.size();
    if (nCount > std::numeric_limits<uint32_t>::max() - nOld)
        throw refused_error(L"PSD ファイルは 4 GiB までです。\n\n"
                            L"レイヤーを結合するか、別の形式で保存してください。");
    m_strBytes.append(nCount, static_cast<char>(uFill));
    return reinterpret_cast<uint8_t*>(m_strBytes.data() + nOld);
}

size_t CPsdBytes::BeginLength() {
    const size_t nAt = GetSize();
    Extend(4, 0);
    return nAt;
}

void CPsdBytes::EndLength(size_t nAt, size_t nAlign) {
    const size_t nBegin = nAt + 4;
    Extend((nAlign - (GetSize() - nBegin) % nAlign) % nAlign, 0);
    SetInt32(nAt, static_cast<uint32_t>(GetSize() - nBegin));
}

void CPsdBytes::SetInt32(size_t nAt, uint32_t u) {
    for (size_t i = 0; i < 4; ++i) m_strBytes[nAt + i] = static_cast<char>(u >> (24 - 8 * i));
}
