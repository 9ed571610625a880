#include "system/files/PackedFile.h"

#include "core/Base/Failure.h"

#include <boost/noncopyable.hpp>

#include <algorithm>
#include <array>
#include <cstring>

#include <zlib.h>

namespace {

constexpr std::string_view MAGIC = "VLMZ";
constexpr size_t BLOCK = 1 << 20;
constexpr size_t BLOCK_HEADER = 8;
/// Tiles are runs of few values: higher levels are slower and gain little.
constexpr int LEVEL = Z_BEST_SPEED;

void StoreBig32(char* p, size_t n) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<char>(n >> (24 - 8 * i));
}

uint32_t LoadBig32(const uint8_t* p) {
    return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3];
}

// Collects bytes and passes them on compressed, block by block.
class CPacker : boost::noncopyable {
public:
    explicit CPacker(const TWriteBytes& fnWrite) : m_fnWrite(fnWrite) {
        m_strBlock.reserve(BLOCK);
        m_strPacked.resize(BLOCK_HEADER + compressBound(BLOCK));
    }
    bool Write(std::string_view strBytes) {
        while (!strBytes.empty()) {
            const std::string_view strPart = strBytes.substr(0, BLOCK - m_strBlock.size());
            m_strBlock += strPart;
            strBytes.remove_prefix(strPart.size());
            if (m_strBlock.size() == BLOCK && !Flush()) return false;
        }
        return true;
    }
    bool Close() { return (m_strBlock.empty() || Flush()) && m_fnWrite(std::string(BLOCK_HEADER, '\0')); }

private:
    bool Flush() {
        uLongf nPacked = m_strPacked.size() - BLOCK_HEADER;
        if (compress2(reinterpret_cast<Bytef*>(m_strPacked.data() + BLOCK_HEADER), &nPacked,
                      reinterpret_cast<const Bytef*>(m_strBlock.data()), m_strBlock.size(), LEVEL) != Z_OK)
            return false;
        StoreBig32(m_strPacked.data(), m_strBlock.size());
        StoreBig32(m_strPacked.data() + 4, nPacked);
        m_strBlock.clear();
        return m_fnWrite(std::string_view(m_strPacked).substr(0, BLOCK_HEADER + nPacked));
    }

    const TWriteBytes& m_fnWrite;
    std::string m_strBlock, m_strPacked;
};

class CPackedReader : public IFileReader {
public:
    explicit CPackedReader(std::unique_ptr<IFileReader> upFile) : m_upFile(std::move(upFile)) {}
    // Returns false when the file cannot be read.
    bool ListBlocks();

    uint64_t GetSize() const override { return m_uSize; }
    bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) override {
        if (uFrom > m_uSize || nLength > m_uSize - uFrom) return false;
        while (nLength > 0) {
            const size_t nAt = static_cast<size_t>(uFrom % BLOCK);
            if (!Load(static_cast<size_t>(uFrom / BLOCK))) return false;
            const size_t n = std::min(nLength, m_vBytes.size() - nAt);
            std::memcpy(pTo, m_vBytes.data() + nAt, n);
            pTo += n;
            uFrom += n;
            nLength -= n;
        }
        return true;
    }

private:
    struct TBlock {
        uint64_t uAt; ///< position of its packed bytes in the file
        uint32_t uPacked;
        uint32_t uLength;
    };

    bool Load(size_t idx);

    const std::unique_ptr<IFileReader> m_upFile;
    std::vector<TBlock> m_vBlocks;
    uint64_t m_uSize = 0;
    size_t m_idxLoaded = SIZE_MAX; ///< index of the block in m_vBytes
    std::vector<uint8_t> m_vBytes, m_vPacked;
};

bool CPackedReader::ListBlocks() {
    for (uint64_t uAt = MAGIC.size();;) {
        std::array<uint8_t, BLOCK_HEADER> aHeader;
        if (m_upFile->GetSize() - uAt < BLOCK_HEADER) throw deserialize_error();
        if (!m_upFile->Read(uAt, aHeader.data(), BLOCK_HEADER)) return false;
        uAt += BLOCK_HEADER;
        const uint32_t uLength = LoadBig32(aHeader.data());
        const uint32_t uPacked = LoadBig32(aHeader.data() + 4);
        if (uLength == 0) return true;
        // Only the last block may be shorter, so that a position determines its block.
        if (uLength > BLOCK || m_uSize % BLOCK != 0 || uPacked > compressBound(BLOCK) ||
            uPacked > m_upFile->GetSize() - uAt)
            throw deserialize_error();
        m_vBlocks.push_back({uAt, uPacked, uLength});
        m_uSize += uLength;
        uAt += uPacked;
    }
}

bool CPackedReader::Load(size_t idx) {
    if (idx == m_idxLoaded) return true;
    m_idxLoaded = SIZE_MAX;
    const TBlock& block = m_vBlocks[idx];
    m_vPacked.resize(block.uPacked);
    m_vBytes.resize(block.uLength);
    if (!m_upFile->Read(block.uAt, m_vPacked.data(), m_vPacked.size())) return false;
    uLongf nLength = block.uLength;
    const int nResult = uncompress(m_vBytes.data(), &nLength, m_vPacked.data(), block.uPacked);
    if (nResult == Z_MEM_ERROR) throw std::bad_alloc();
    if (nResult != Z_OK || nLength != block.uLength) throw deserialize_error();
    m_idxLoaded = idx;
    return true;
}

} // namespace

bool WritePacked(const TFillBytes& fnFill, const TWriteBytes& fnWrite) {
    CPacker packer(fnWrite);
    return fnWrite(MAGIC) && fnFill([&](std::string_view str) { return packer.Write(str); }) &&
           packer.Close();
}

std::unique_ptr<IFileReader> OpenPacked(std::unique_ptr<IFileReader> upFile) {
    std::array<char, MAGIC.size()> aMagic;
    if (!upFile || upFile->GetSize() < aMagic.size()) return upFile;
    if (!upFile->Read(0, reinterpret_cast<uint8_t*>(aMagic.data()), aMagic.size())) return nullptr;
    if (std::string_view(aMagic.data(), aMagic.size()) != MAGIC) return upFile;
    auto upReader = std::make_unique<CPackedReader>(std::move(upFile));
    if (!upReader->ListBlocks()) return nullptr;
    return upReader;
}
