// Fuzzes the reader of packed files: accepted files can be read from every position, packed again and read
// again.
#include "core/Base/Failure.h"
#include "system/files/PackedFile.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

class CBytes : public IFileReader {
public:
    explicit CBytes(std::string strBytes) : m_strBytes(std::move(strBytes)) {}
    uint64_t GetSize() const override { return m_strBytes.size(); }
    bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) override {
        if (uFrom > m_strBytes.size() || nLength > m_strBytes.size() - uFrom) std::abort(); // beyond the file
        std::memcpy(pTo, m_strBytes.data() + uFrom, nLength);
        return true;
    }

private:
    const std::string m_strBytes;
};

// Reads all bytes in pieces from the end, so that blocks are loaded backwards.
std::string Unpack(std::string strFile) {
    constexpr uint64_t PIECE = 1 << 18;
    const auto upReader = OpenPacked(std::make_unique<CBytes>(std::move(strFile)));
    std::string strBytes(upReader->GetSize(), '\0');
    for (uint64_t uTo = strBytes.size(); uTo > 0;) {
        const uint64_t uFrom = uTo - std::min(PIECE, uTo);
        if (!upReader->Read(uFrom, reinterpret_cast<uint8_t*>(strBytes.data()) + uFrom, uTo - uFrom))
            std::abort();
        uTo = uFrom;
    }
    return strBytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    std::string strBytes, strPacked;
    try {
        strBytes = Unpack({reinterpret_cast<const char*>(pData), nSize});
    } catch (const deserialize_error&) {
        return 0;
    }
    WritePacked([&](const TWriteBytes& fnWrite) { return fnWrite(strBytes); },
                [&](std::string_view str) { return strPacked += str, true; });
    // Outside the guard: the reader must accept every file of the writer.
    if (Unpack(strPacked) != strBytes) std::abort();
    return 0;
}
