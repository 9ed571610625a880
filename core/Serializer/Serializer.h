// The file format of every model class: a tree of chunks (tag, version, length, payload), big-endian.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Serializer/WireImage.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using TBytes = std::vector<uint8_t>;

/// A chunk tag of four letters, in file order.
constexpr uint32_t MakeTag(const char (&psz)[5]) {
    return static_cast<uint32_t>(static_cast<uint8_t>(psz[0])) << 24 |
           static_cast<uint32_t>(static_cast<uint8_t>(psz[1])) << 16 |
           static_cast<uint32_t>(static_cast<uint8_t>(psz[2])) << 8 |
           static_cast<uint32_t>(static_cast<uint8_t>(psz[3]));
}

/// Tag of a chunk without a meaning: four blanks.
constexpr uint32_t TAG_EMPTY = MakeTag("    ");
/// Tag of the chunk behind a file's top chunk: for each attached chunk its owner's position, then itself.
constexpr uint32_t TAG_ATTACHED = MakeTag("MORE");

/// Bytes of tag, version and length before a chunk's payload.
constexpr uint32_t CHUNK_HEADER = 12;

/// Builds one chunk. It stores written bytes but only references parts, and passes both on when it is
/// appended to another chunk, so that a whole document's chunk needs little more memory than its tree.
/// Lengths over 32 bits raise refused_error.
class CSerializer {
public:
    virtual ~CSerializer() = default;
    CSerializer() = default;
    CSerializer(const CSerializer&) = default;
    CSerializer(CSerializer&&) = default;
    CSerializer& operator=(const CSerializer&) = default;
    CSerializer& operator=(CSerializer&&) = default;

    void SetTag(uint32_t uTag, uint32_t uVersion);
    void WriteInt32(int32_t n);
    void WriteByte(uint8_t u) { *Extend(1) = u; }
    void WriteBool(bool b) { WriteByte(b ? 1 : 0); }
    void WriteSize(CSize sz);
    void WritePoint(CPoint pt);
    /// A count of UTF-16 units, then the units; code points above U+FFFF become surrogate pairs.
    void WriteString(const std::wstring& str);
    void WriteBytes(const uint8_t* pBytes, size_t nLength);
    /// Appends `nLength` bytes, to be filled by the caller before the next write.
    uint8_t* Extend(size_t nLength);
    /// Appends a part, whose bytes are fetched when the chunk is written out or read.
    void WritePart(const boost::shared_ptr<const IWirePart>& spPart);
    /// Appends the child's tag, version, payload length and payload.
    void WriteChunk(CSerializer child);
    /// Attaches a chunk, to which nothing is attached, that readers of this one can do without. It stands
    /// beside the payload and goes along with it through WriteChunk.
    void Attach(CSerializer chunk);
    /// Drops the attached chunks with a tag, those of the chunks inside too.
    void Detach(uint32_t uTag);
    /// Appends the top chunk of a file, and behind it what is attached to the chunks in it, if anything.
    void WriteTop(CSerializer top);

    uint32_t GetTag() const { return m_uTag; }
    uint32_t GetVersion() const { return m_uVersion; }
    /// Bytes of the payload.
    uint32_t GetLength() const { return static_cast<uint32_t>(m_nLength); }
    /// The whole payload in one piece.
    TBytes GetPayload() const;
    /// The same with what is attached, as WriteTop appends it: equal bytes have equal content.
    TBytes GetWhole() const;
    /// Passes the payload to `fnWrite` piece by piece; stops and returns false when `fnWrite` does.
    bool WriteOut(const std::function<bool(std::string_view)>& fnWrite) const;

private:
    friend class CChunkImage;
    friend class CDeserializer;

    // A run of bytes and, if any, the part that follows it.
    struct TPiece {
        TBytes vBytes;
        boost::shared_ptr<const IWirePart> spPart;
    };

    void Grow(uint64_t nLength);
    void Join(TBytes vBytes);
    void Close(const boost::shared_ptr<const IWirePart>& spPart);
    void WriteAttached();

    /// Chunks, each with the position in this payload where the payload of its owner begins.
    std::vector<std::pair<uint64_t, boost::shared_ptr<const CSerializer>>> m_vAttached;
    std::vector<TPiece> m_vPieces;
    TBytes m_vBytes; ///< bytes after the last piece
    uint64_t m_nLength = 0;
    uint32_t m_uTag = TAG_EMPTY;
    uint32_t m_uVersion = 0;
};

/// Reads one chunk of a shared image; nested readers only move indices. An operation beyond the chunk's end
/// raises deserialize_error and reads nothing.
class CDeserializer {
public:
    /// An empty reader, to be set by ReadChunk.
    CDeserializer() = default;
    /// Reads a whole image, such as a file's; its size must fit into 32 bits.
    explicit CDeserializer(boost::shared_ptr<CWireImage> spImage);
    /// Reads untrusted bytes in memory.
    explicit CDeserializer(boost::shared_ptr<const TBytes> spBytes);
    /// Reads a chunk just built, starting inside it. It is trusted, so its claims are unlimited, and its
    /// parts are read without being written.
    explicit CDeserializer(CSerializer chunk);
    virtual ~CDeserializer() = default;

    /// Sets `child` to the chunk at the position and moves past it. The child shares the image.
    void ReadChunk(CDeserializer& child);
    /// Sets `top` to a file's top chunk and takes in what is attached to the chunks in it; anything else
    /// behind it is ignored.
    void ReadTop(CDeserializer& top);
    /// Sets `chunk` to the first chunk with that tag that is attached to this one; false without one.
    bool FindAttached(uint32_t uTag, CDeserializer& chunk) const;
    int32_t ReadInt32();
    uint8_t ReadByte();
    bool ReadBool() { return ReadByte() != 0; }
    CSize ReadSize();
    CPoint ReadPoint();
    /// An unpaired surrogate is kept as it is.
    std::wstring ReadString();
    /// `nLength` bytes, valid until the next read from the image.
    const uint8_t* ReadBytes(size_t nLength);
    /// The part that makes up the next `nLength` bytes; null, reading nothing, where there are only bytes.
    const IWirePart* ReadPart(size_t nLength);
    /// Counts memory that this chunk allocates without containing its bytes; raises deserialize_error when
    /// the image's limit is exceeded.
    void Claim(uint64_t uBytes) { m_spImage->Claim(uBytes); }

    /// CWireImage::LeavesTiles of the image.
    bool LeavesTiles() const { return m_spImage->LeavesTiles(); }
    /// The same chunk, read through another window over the same bytes.
    CDeserializer Through(const boost::shared_ptr<CWireImage>& spImage) const {
        CDeserializer reader(*this);
        reader.m_spImage = spImage;
        return reader;
    }

    uint32_t GetTag() const { return m_uTag; }
    uint32_t GetVersion() const { return m_uVersion; }
    /// The nesting depth of this chunk.
    uint32_t GetDepth() const { return m_uDepth; }
    /// Bytes left in this chunk.
    uint32_t GetRest() const { return m_uEnd - m_uPos; }
    /// Raises deserialize_error unless the chunk's tag is `uTag`.
    void ExpectTag(uint32_t uTag) const;
    /// Raises deserialize_error unless everything has been read.
    void ExpectEnd() const;

private:
    void IndexAttached();

    boost::shared_ptr<CWireImage> m_spImage;
    uint32_t m_uBegin = 0;
    uint32_t m_uEnd = 0;
    uint32_t m_uPos = 0;
    uint32_t m_uTag = TAG_EMPTY;
    uint32_t m_uVersion = 0;
    uint32_t m_uDepth = 0;
};
