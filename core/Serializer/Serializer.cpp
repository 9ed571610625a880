#include "core/Serializer/Serializer.h"

#include "core/Base/Failure.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr size_t SMALL_RUN = 4096;      ///< up to so many bytes a copy is cheaper
constexpr size_t WRITE_PIECE = 1 << 18; ///< bytes collected by WriteOut; small enough for the cache

void StoreBig32(uint8_t* p, uint32_t u) {
    p[0] = static_cast<uint8_t>(u >> 24);
    p[1] = static_cast<uint8_t>(u >> 16);
    p[2] = static_cast<uint8_t>(u >> 8);
    p[3] = static_cast<uint8_t>(u);
}

} // namespace

void CSerializer::SetTag(uint32_t uTag, uint32_t uVersion) {
    m_uTag = uTag;
    m_uVersion = uVersion;
}

void CSerializer::Grow(uint64_t nLength) {
    if (nLength > std::numeric_limits<uint32_t>::max() - CHUNK_HEADER - m_nLength)
        throw refused_error(L"書類が 4 GiB を超えるので保存できません。\n\n"
                            L"レイヤーを結合するか、画像を縮めてから保存してください。");
    m_nLength += nLength;
}

uint8_t* CSerializer::Extend(size_t nLength) {
    Grow(nLength);
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
    uint8_t* p = Extend(strUnits.size() * 2);
    for (const char16_t u : strUnits) {
        *p++ = static_cast<uint8_t>(u >> 8);
        *p++ = static_cast<uint8_t>(u);
    }
}

void CSerializer::WriteBytes(const uint8_t* pBytes, size_t nLength) {
    std::copy(pBytes, pBytes + nLength, Extend(nLength));
}

void CSerializer::Close(const boost::shared_ptr<const IWirePart>& spPart) {
    m_vPieces.push_back({std::move(m_vBytes), spPart});
    m_vBytes = {};
}

void CSerializer::WritePart(const boost::shared_ptr<const IWirePart>& spPart) {
    Grow(spPart->GetWireSize());
    Close(spPart);
}

void CSerializer::Join(TBytes vBytes) {
    if (vBytes.size() <= SMALL_RUN) {
        m_vBytes.insert(m_vBytes.end(), vBytes.begin(), vBytes.end());
        return;
    }
    Close({});
    m_vPieces.push_back({std::move(vBytes), {}});
}

void CSerializer::WriteChunk(CSerializer child) {
    uint8_t* p = Extend(CHUNK_HEADER);
    StoreBig32(p, child.m_uTag);
    StoreBig32(p + 4, child.m_uVersion);
    StoreBig32(p + 8, child.GetLength());
    for (auto& [nOwner, spChunk] : child.m_vAttached)
        m_vAttached.emplace_back(m_nLength + nOwner, std::move(spChunk));
    Grow(child.m_nLength);
    for (TPiece& piece : child.m_vPieces) {
        Join(std::move(piece.vBytes));
        if (piece.spPart) Close(piece.spPart);
    }
    Join(std::move(child.m_vBytes));
}

void CSerializer::Attach(CSerializer chunk) {
    m_vAttached.emplace_back(0, boost::make_shared<const CSerializer>(std::move(chunk)));
}

void CSerializer::Detach(uint32_t uTag) {
    std::erase_if(m_vAttached, [uTag](const auto& attached) { return attached.second->GetTag() == uTag; });
}

void CSerializer::WriteAttached() {
    if (m_vAttached.empty()) return;
    CSerializer list;
    list.SetTag(TAG_ATTACHED, 0);
    for (const auto& [nOwner, spChunk] : std::exchange(m_vAttached, {})) {
        list.WriteInt32(static_cast<int32_t>(nOwner));
        list.WriteChunk(*spChunk);
    }
    WriteChunk(std::move(list));
}

void CSerializer::WriteTop(CSerializer top) {
    WriteChunk(std::move(top));
    WriteAttached();
}

TBytes CSerializer::GetWhole() const {
    CSerializer whole(*this);
    whole.WriteAttached();
    return whole.GetPayload();
}

TBytes CSerializer::GetPayload() const {
    TBytes vPayload;
    vPayload.reserve(m_nLength);
    for (const TPiece& piece : m_vPieces) {
        vPayload.insert(vPayload.end(), piece.vBytes.begin(), piece.vBytes.end());
        if (!piece.spPart) continue;
        vPayload.resize(vPayload.size() + piece.spPart->GetWireSize());
        piece.spPart->WriteWire(vPayload.data() + vPayload.size() - piece.spPart->GetWireSize());
    }
    vPayload.insert(vPayload.end(), m_vBytes.begin(), m_vBytes.end());
    return vPayload;
}

bool CSerializer::WriteOut(const std::function<bool(std::string_view)>& fnWrite) const {
    TBytes vGathered(WRITE_PIECE);
    size_t nUsed = 0;
    const auto flush = [&] {
        const bool bOk = !nUsed || fnWrite({reinterpret_cast<const char*>(vGathered.data()), nUsed});
        nUsed = 0;
        return bOk;
    };
    // Calls `fill(room)` for `nLength` bytes.
    const auto add = [&](size_t nLength, const auto& fill) {
        if (nLength > vGathered.size() - nUsed && !flush()) return false;
        if (nLength > vGathered.size()) vGathered.resize(nLength);
        fill(vGathered.data() + nUsed);
        nUsed += nLength;
        return true;
    };
    const auto addBytes = [&](const TBytes& v) {
        if (v.size() > WRITE_PIECE)
            return flush() && fnWrite({reinterpret_cast<const char*>(v.data()), v.size()});
        return add(v.size(), [&](uint8_t* p) { std::copy(v.begin(), v.end(), p); });
    };
    for (const TPiece& piece : m_vPieces) {
        if (!addBytes(piece.vBytes)) return false;
        if (piece.spPart &&
            !add(piece.spPart->GetWireSize(), [&](uint8_t* p) { piece.spPart->WriteWire(p); }))
            return false;
    }
    return addBytes(m_vBytes) && flush();
}
