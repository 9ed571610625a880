#include "system/files/PackedFile.h"

#include "tests/support/MemoryFiles.h"

namespace {

constexpr size_t BLOCK = 1 << 20;

// Bytes like those of tiles: runs, and a part that cannot be compressed.
std::string MakeBytes(size_t nLength) {
    std::mt19937 random(static_cast<uint32_t>(nLength));
    std::string strBytes(nLength, '\0');
    for (size_t i = 0; i < nLength; ++i)
        strBytes[i] = static_cast<char>(i < nLength / 3 ? random() : i / 5000);
    return strBytes;
}

class PackedFile : public testing::Test {
protected:
    std::string Pack(std::string_view strBytes, size_t nPiece = 70001) {
        std::string strPacked;
        size_t nMost = 0;
        const auto fill = [&](const TWriteBytes& fnWrite) {
            for (size_t n = 0; n < strBytes.size(); n += nPiece)
                if (!fnWrite(strBytes.substr(n, nPiece))) return false;
            return true;
        };
        EXPECT_TRUE(WritePacked(fill, [&](std::string_view str) {
            nMost = std::max(nMost, str.size());
            return strPacked += str, true;
        }));
        EXPECT_LT(nMost, 2 * BLOCK) << "piece by piece";
        return strPacked;
    }
    std::unique_ptr<IFileReader> Open(const std::string& strFile) {
        m_files.m_mapFiles[L"f"] = strFile;
        return OpenPacked(m_files.Open(L"f"));
    }
    static std::string ReadAll(IFileReader& reader, uint64_t uFrom = 0, size_t nLength = SIZE_MAX) {
        std::string str(std::min<size_t>(nLength, reader.GetSize() - uFrom), 'x');
        EXPECT_TRUE(reader.Read(uFrom, reinterpret_cast<uint8_t*>(str.data()), str.size()));
        return str;
    }

    CMemoryFiles m_files;
};

} // namespace

TEST_F(PackedFile, BytesComeBackFromAnyPlace) {
    for (const size_t nLength : {size_t{0}, size_t{1}, BLOCK - 1, BLOCK, BLOCK + 1, 3 * BLOCK + 5}) {
        const std::string strBytes = MakeBytes(nLength);
        for (const size_t nPiece : {size_t{70001}, 5 * BLOCK}) {
            const std::string strPacked = Pack(strBytes, nPiece);
            EXPECT_LT(strPacked.size(), nLength / 2 + 100);
            const auto upReader = Open(strPacked);
            EXPECT_EQ(upReader->GetSize(), nLength);
            EXPECT_TRUE(ReadAll(*upReader) == strBytes) << nLength;
        }
    }
    const std::string strBytes = MakeBytes(3 * BLOCK + 5);
    const auto upReader = Open(Pack(strBytes));
    for (const uint64_t uFrom : {3 * BLOCK, BLOCK - 3, size_t{0}, 2 * BLOCK - 1})
        EXPECT_TRUE(ReadAll(*upReader, uFrom, BLOCK + 7) == strBytes.substr(uFrom, BLOCK + 7)) << uFrom;
    uint8_t aByte[6];
    EXPECT_FALSE(upReader->Read(3 * BLOCK, aByte, 6)) << "beyond the end";
    EXPECT_FALSE(upReader->Read(UINT64_MAX, aByte, 2));
}

TEST_F(PackedFile, FilesOfAnotherKindAreReadAsTheyAre) {
    for (const std::string strFile : {"", "VLM", "VLM1 and so on"})
        EXPECT_EQ(ReadAll(*Open(strFile)), strFile);
    EXPECT_EQ(OpenPacked(nullptr), nullptr);
    m_files.m_nReadable = 20; // a disk that fails after the first header
    EXPECT_EQ(Open(Pack(MakeBytes(2 * BLOCK))), nullptr);
}

TEST_F(PackedFile, DamageIsTold) {
    const std::string strBytes = MakeBytes(2 * BLOCK + 9), strWhole = Pack(strBytes);
    const auto read = [&](const std::string& strFile) { return ReadAll(*Open(strFile)); };
    for (size_t nCut = 4; nCut < strWhole.size(); nCut += nCut < 40 ? 1 : strWhole.size() / 60)
        EXPECT_THROW(read(strWhole.substr(0, nCut)), deserialize_error) << nCut;
    EXPECT_THROW(read(strWhole.substr(0, strWhole.size() - 1)), deserialize_error);
    std::mt19937 random(5);
    for (int n = 0; n < 200; ++n) {
        std::string strFile = strWhole;
        const size_t nAt = n < 12 ? 4 + n : 4 + random() % (strFile.size() - 12);
        strFile[nAt] = static_cast<char>(strFile[nAt] + 1 + random() % 255);
        try {
            EXPECT_TRUE(read(strFile) == strBytes) << nAt;
        } catch (const deserialize_error&) {
        }
    }
}
