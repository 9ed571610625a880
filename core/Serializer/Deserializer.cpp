#include "core/Serializer/Serializer.h"

#include "core/Base/Failure.h"
#include "core/Base/Text.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>

namespace {

uint32_t LoadBig32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) << 24 | static_cast<uint32_t>(p[1]) << 16 |
           static_cast<uint32_t>(p[2]) << 8 | p[3];
}

// Untrusted bytes in memory: one window over all.
class CMemoryImage : public CWireImage {
public:
    explicit CMemoryImage(boost::shared_ptr<const TBytes> spBytes)
        : CWireImage(spBytes->size(), ForeignClaim(spBytes->size())), m_spBytes(std::move(spBytes)) {}

protected:
    void MoveWindow(uint64_t, size_t) override { SetWindow(0, m_spBytes->data(), m_spBytes->size()); }

private:
    boost::shared_ptr<const TBytes> m_spBytes;
};

} // namespace

/// A chunk in memory, as built by its writer.
class CChunkImage : public CWireImage {
public:
    explicit CChunkImage(CSerializer chunk) : CWireImage(chunk.m_nLength), m_chunk(std::move(chunk)) {
        m_chunk.Close({});
        uint64_t uPos = 0;
        for (const CSerializer::TPiece& piece : m_chunk.m_vPieces) {
            m_vFirst.push_back(uPos);
            uPos += piece.vBytes.size() + (piece.spPart ? piece.spPart->GetWireSize() : 0);
        }
    }

    const IWirePart* FindPart(uint64_t uPos, size_t nLength) const override {
        const size_t i = PieceAt(uPos);
        const CSerializer::TPiece& piece = m_chunk.m_vPieces[i];
        const bool bHere = piece.spPart && uPos == m_vFirst[i] + piece.vBytes.size();
        return bHere && nLength == piece.spPart->GetWireSize() ? piece.spPart.get() : nullptr;
    }

protected:
    void MoveWindow(uint64_t uPos, size_t nLength) override {
        const size_t i = PieceAt(uPos);
        const TBytes& vBytes = m_chunk.m_vPieces[i].vBytes;
        if (uPos + nLength <= m_vFirst[i] + vBytes.size()) {
            SetWindow(m_vFirst[i], vBytes.data(), vBytes.size());
            return;
        }
        // Beyond the run: the piece's part is written after it, then the following pieces, as far as
        // needed.
        m_vWindow.clear();
        for (size_t n = i; m_vWindow.size() < uPos + nLength - m_vFirst[i]; ++n) {
            const CSerializer::TPiece& piece = m_chunk.m_vPieces[n];
            m_vWindow.insert(m_vWindow.end(), piece.vBytes.begin(), piece.vBytes.end());
            if (!piece.spPart) continue;
            const size_t nBefore = m_vWindow.size();
            m_vWindow.resize(nBefore + piece.spPart->GetWireSize());
            piece.spPart->WriteWire(m_vWindow.data() + nBefore);
        }
        SetWindow(m_vFirst[i], m_vWindow.data(), m_vWindow.size());
    }

private:
    // The last piece that begins at or before a position.
    size_t PieceAt(uint64_t uPos) const {
        const auto it = std::upper_bound(m_vFirst.begin(), m_vFirst.end(), uPos);
        return static_cast<size_t>(it - m_vFirst.begin()) - 1;
    }

    CSerializer m_chunk;
    std::vector<uint64_t> m_vFirst; ///< start of each piece
    TBytes m_vWindow;
};

CDeserializer::CDeserializer(boost::shared_ptr<CWireImage> spImage) : m_spImage(std::move(spImage)) {
    if (m_spImage->GetSize() > std::numeric_limits<uint32_t>::max()) throw deserialize_error();
    m_uEnd = static_cast<uint32_t>(m_spImage->GetSize());
}

CDeserializer::CDeserializer(boost::shared_ptr<const TBytes> spBytes)
    : CDeserializer(boost::shared_ptr<CWireImage>(boost::make_shared<CMemoryImage>(std::move(spBytes)))) {}

CDeserializer::CDeserializer(CSerializer chunk)
    : m_uEnd(chunk.GetLength()), m_uTag(chunk.GetTag()), m_uVersion(chunk.GetVersion()) {
    chunk.WriteAttached();
    m_spImage = boost::make_shared<CChunkImage>(std::move(chunk));
    CDeserializer behind(m_spImage);
    behind.m_uPos = m_uEnd;
    behind.IndexAttached();
}

void CDeserializer::ReadTop(CDeserializer& top) {
    ReadChunk(top);
    IndexAttached();
}

// The list of attached chunks is expected at the position.
void CDeserializer::IndexAttached() {
    if (GetRest() < CHUNK_HEADER || LoadBig32(m_spImage->Fetch(m_uPos, 4)) != TAG_ATTACHED) return;
    CDeserializer list;
    ReadChunk(list);
    std::vector<CWireImage::TAttached> vAttached;
    while (list.GetRest() != 0) {
        const auto uOwner = static_cast<uint32_t>(list.ReadInt32());
        vAttached.push_back({uOwner, list.m_uPos});
        CDeserializer chunk;
        list.ReadChunk(chunk);
    }
    m_spImage->SetAttached(std::move(vAttached));
}

bool CDeserializer::FindAttached(uint32_t uTag, CDeserializer& chunk) const {
    for (const CWireImage::TAttached& attached : m_spImage->AttachedTo(m_uBegin)) {
        CDeserializer list(*this);
        list.m_uPos = attached.uAt;
        list.m_uEnd = static_cast<uint32_t>(m_spImage->GetSize());
        list.ReadChunk(chunk);
        if (chunk.m_uTag == uTag) return true;
    }
    return false;
}

void CDeserializer::ReadChunk(CDeserializer& child) {
    if (GetRest() < CHUNK_HEADER) throw deserialize_error();
    const uint8_t* p = m_spImage->Fetch(m_uPos, CHUNK_HEADER);
    const uint32_t uLength = LoadBig32(p + 8);
    if (uLength > GetRest() - CHUNK_HEADER) throw deserialize_error();
    child.m_spImage = m_spImage;
    child.m_uTag = LoadBig32(p);
    child.m_uVersion = LoadBig32(p + 4);
    child.m_uDepth = m_uDepth + 1;
    child.m_uBegin = child.m_uPos = m_uPos + CHUNK_HEADER;
    child.m_uEnd = child.m_uPos + uLength;
    m_uPos = child.m_uEnd;
}

const uint8_t* CDeserializer::ReadBytes(size_t nLength) {
    if (nLength > GetRest()) throw deserialize_error();
    if (nLength == 0) return nullptr;
    const uint8_t* p = m_spImage->Fetch(m_uPos, nLength);
    m_uPos += static_cast<uint32_t>(nLength);
    return p;
}

const IWirePart* CDeserializer::ReadPart(size_t nLength) {
    if (nLength > GetRest()) throw deserialize_error();
    const IWirePart* pPart = m_spImage->FindPart(m_uPos, nLength);
    if (pPart) m_uPos += static_cast<uint32_t>(nLength);
    return pPart;
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
        AppendCodePoint(str, u);
    }
    return str;
}

void CDeserializer::ExpectTag(uint32_t uTag) const {
    if (m_uTag != uTag) throw deserialize_error();
}

void CDeserializer::ExpectEnd() const {
    if (m_uPos != m_uEnd) throw deserialize_error();
}
