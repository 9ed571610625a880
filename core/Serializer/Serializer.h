// The one wire form of every model class: a tree of chunks (tag, version, length, payload), big-endian.
#pragma once

#include "core/Base/Geometry.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

using TBytes = std::vector<uint8_t>;

/// A chunk tag of four letters, as it reads in the file.
constexpr uint32_t MakeTag(const char (&psz)[5]) {
    return static_cast<uint32_t>(static_cast<uint8_t>(psz[0])) << 24 |
           static_cast<uint32_t>(static_cast<uint8_t>(psz[1])) << 16 |
           static_cast<uint32_t>(static_cast<uint8_t>(psz[2])) << 8 |
           static_cast<uint32_t>(static_cast<uint8_t>(psz[3]));
}

/// Tag of a chunk that says nothing: four blanks.
constexpr uint32_t TAG_EMPTY = MakeTag("    ");

/// Builds one chunk in memory. Movable; lengths over 32 bits cannot be represented and raise internal_error.
class CSerializer {
public:
    CSerializer() = default;
    CSerializer(CSerializer&&) = default;
    CSerializer& operator=(CSerializer&&) = default;
    virtual ~CSerializer() = default;

    void SetTag(uint32_t uTag, uint32_t uVersion);
    void WriteInt32(int32_t n);
    void WriteByte(uint8_t u) { m_vBytes.push_back(u); }
    void WriteBool(bool b) { WriteByte(b ? 1 : 0); }
    void WriteSize(CSize sz);
    void WritePoint(CPoint pt);
    /// A count of UTF-16 units, then the units; code points above U+FFFF become surrogate pairs.
    void WriteString(const std::wstring& str);
    void WriteBytes(const uint8_t* pBytes, size_t nLength);
    /// Room for `nLength` bytes at the end, to be filled by the caller before the next write.
    uint8_t* Extend(size_t nLength);
    /// Appends the child's tag, version, payload length and payload.
    void WriteChunk(const CSerializer& child);

    uint32_t GetTag() const { return m_uTag; }
    uint32_t GetVersion() const { return m_uVersion; }
    const TBytes& GetPayload() const { return m_vBytes; }

private:
    TBytes m_vBytes;
    uint32_t m_uTag = TAG_EMPTY;
    uint32_t m_uVersion = 0;
};

/// Reads one chunk out of a shared buffer; nested readers only move indices. Every operation that would pass
/// the chunk's end raises deserialize_error and reads nothing.
class CDeserializer {
public:
    /// A reader of nothing, to be pointed at a chunk by ReadChunk.
    CDeserializer() = default;
    /// Over a whole file image.
    explicit CDeserializer(boost::shared_ptr<const TBytes> spImage);
    virtual ~CDeserializer() = default;

    /// Points `child` at the chunk here and moves past it. The child shares the buffer.
    void ReadChunk(CDeserializer& child);
    int32_t ReadInt32();
    uint8_t ReadByte();
    bool ReadBool() { return ReadByte() != 0; }
    CSize ReadSize();
    CPoint ReadPoint();
    std::wstring ReadString();
    /// `nLength` bytes of the buffer, not copied; valid as long as any reader of it.
    const uint8_t* ReadBytes(size_t nLength);

    uint32_t GetTag() const { return m_uTag; }
    uint32_t GetVersion() const { return m_uVersion; }
    /// Bytes left in this chunk.
    uint32_t GetRest() const { return m_uEnd - m_uPos; }
    /// Raises deserialize_error unless the tag is `uTag`.
    void ExpectTag(uint32_t uTag) const;
    /// Raises deserialize_error unless everything has been read.
    void ExpectEnd() const;

private:
    const uint8_t* m_pData = nullptr;
    boost::shared_ptr<const TBytes> m_spOwner;
    uint32_t m_uEnd = 0;
    uint32_t m_uPos = 0;
    uint32_t m_uTag = TAG_EMPTY;
    uint32_t m_uVersion = 0;
};
