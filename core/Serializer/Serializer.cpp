#include "core/Serializer/Serializer.h"

#include "core/Base/Failure.h"

#include <limits>

namespace {

constexpr uint32_t HEADER_SIZE = 12;

void StoreBig32(uint8_t* p, uint32_t u) {
    p[0] = static_cast<uint8_t>(u >> 24);
    p[1] = static_cast<uint8_t>(u >> 16);
    p[2] = static_cast<uint8_t>(u >> 8);
    p[3] = static_cast<uint8_t>(u);
}

uint32_t LoadBig32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) << 24 | static_cast<uint32_t>(p[1]) << 16 |
           static_cast<uint32_t>(p[2]) << 8 | p[3];
}

} // namespace

void CSerializer::SetTag(uint32_t uTag, uint32_t uVersion) {
    m_uTag = uTag;
    m_uVersion = uVersion;
}

uint8_t* CSerializer::Extend(size_t nLength) {
    if (nLength > std::numeric_limits<uint32_t>::max() - HEADER_SIZE - m_vBytes.size())
        throw internal_error(L"CSerializer: the document exceeds 4 GiB.");
    const size_t nOld = m_vBytes.size();
    m_vBytes.resize(nOld + nLength);
    return m_vBytes.data() + nOld;
}

void CSerializer::WriteInt32(int32_t n) { StoreBig32(Extend(4), static_cast<uint32_t>(n)); }

void CSerializer::WriteSize(CSize sz) {
    WriteInt32(sz.cx);
    WriteInt32(sz.cy);
}

void CSerializer::WritePoint(CPoint pt) {
    WriteInt32(pt.x);
    WriteInt32(pt.y);
}

void CSerializer::WriteString(const std::wstring& str) {
    std::u16string strUnits;
    for (const wchar_t ch : str) {
        const uint32_t u = static_cast<uint32_t>(ch);
        if (u > 0xFFFF && u <= 0x10FFFF) {
            strUnits += static_cast<char16_t>(0xD800 + ((u - 0x10000) >> 10));
            strUnits += static_cast<char16_t>(0xDC00 + ((u - 0x10000) & 0x3FF));
        } else {
            strUnits += static_cast<char16_t>(u > 0x10FFFF ? 0xFFFD : u);
        }
    }
    WriteInt32(static_cast<int32_t>(strUnits.size()));
    for (const char16_t u : strUnits) {
        WriteByte(static_cast<uint8_t>(u >> 8));
        WriteByte(static_cast<uint8_t>(u));
    }
}

void CSerializer::WriteBytes(const uint8_t* pBytes, size_t nLength) {
    std::copy(pBytes, pBytes + nLength, Extend(nLength));
}

void CSerializer::WriteChunk(const CSerializer& child) {
    uint8_t* p = Extend(HEADER_SIZE + child.m_vBytes.size());
    StoreBig32(p, child.m_uTag);
    StoreBig32(p + 4, child.m_uVersion);
    StoreBig32(p + 8, static_cast<uint32_t>(child.m_vBytes.size()));
    std::copy(child.m_vBytes.begin(), child.m_vBytes.end(), p + HEADER_SIZE);
}

CDeserializer::CDeserializer(boost::shared_ptr<const TBytes> spImage) : m_spOwner(std::move(spImage)) {
    if (m_spOwner->size() > std::numeric_limits<uint32_t>::max()) throw deserialize_error();
    m_pData = m_spOwner->data();
    m_uEnd = static_cast<uint32_t>(m_spOwner->size());
}

void CDeserializer::ReadChunk(CDeserializer& child) {
    if (GetRest() < HEADER_SIZE) throw deserialize_error();
    const uint8_t* p = m_pData + m_uPos;
    const uint32_t uLength = LoadBig32(p + 8);
    if (uLength > GetRest() - HEADER_SIZE) throw deserialize_error();
    child.m_pData = m_pData;
    child.m_spOwner = m_spOwner;
    child.m_uTag = LoadBig32(p);
    child.m_uVersion = LoadBig32(p + 4);
    child.m_uPos = m_uPos + HEADER_SIZE;
    child.m_uEnd = child.m_uPos + uLength;
    m_uPos = child.m_uEnd;
}

const uint8_t* CDeserializer::ReadBytes(size_t nLength) {
    if (nLength > GetRest()) throw deserialize_error();
    const uint8_t* p = m_pData + m_uPos;
    m_uPos += static_cast<uint32_t>(nLength);
    return p;
}

int32_t CDeserializer::ReadInt32() { return static_cast<int32_t>(LoadBig32(ReadBytes(4))); }

uint8_t CDeserializer::ReadByte() { return *ReadBytes(1); }

CSize CDeserializer::ReadSize() {
    const int32_t cx = ReadInt32();
    return {cx, ReadInt32()};
}

CPoint CDeserializer::ReadPoint() {
    const int32_t x = ReadInt32();
    return {x, ReadInt32()};
}

std::wstring CDeserializer::ReadString() {
    const uint32_t uCount = static_cast<uint32_t>(ReadInt32());
    if (uCount > GetRest() / 2) throw deserialize_error();
    const uint8_t* p = ReadBytes(size_t{uCount} * 2);
    const auto unit = [&](uint32_t i) { return static_cast<uint32_t>(p[i * 2]) << 8 | p[i * 2 + 1]; };
    std::wstring str;
    str.reserve(uCount);
    for (uint32_t i = 0; i < uCount; ++i) {
        uint32_t u = unit(i);
        if (u >= 0xD800 && u < 0xDC00 && i + 1 < uCount && unit(i + 1) >= 0xDC00 && unit(i + 1) < 0xE000)
            u = 0x10000 + ((u - 0xD800) << 10) + (unit(++i) - 0xDC00);
        str += static_cast<wchar_t>(u);
    }
    return str;
}

void CDeserializer::ExpectTag(uint32_t uTag) const {
    if (m_uTag != uTag) throw deserialize_error();
}

void CDeserializer::ExpectEnd() const {
    if (m_uPos != m_uEnd) throw deserialize_error();
}
