#include "system/pictures/PictureCheck.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace {

using namespace std::string_view_literals;

// Reads numbers at any position of the file; reading past the end returns 0 and sets `bPast`.
struct TBytes {
    std::string_view str;
    bool bBigEndian = false;
    bool bPast = false;

    uint64_t Number(uint64_t nAt, int cb) {
        if (nAt > str.size() || str.size() - nAt < static_cast<uint64_t>(cb)) {
            bPast = true;
            return 0;
        }
        uint64_t uValue = 0;
        for (int i = 0; i < cb; ++i) {
            const int nByte = bBigEndian ? i : cb - 1 - i;
            uValue = uValue << 8 |
                     static_cast<uint8_t>(str[static_cast<size_t>(nAt) + static_cast<size_t>(nByte)]);
        }
        return uValue;
    }
    bool Holds(uint64_t nAt, uint64_t cb) const { return nAt <= str.size() && cb <= str.size() - nAt; }
};

bool IsWholePng(std::string_view strFile) {
    TBytes bytes{strFile, true};
    for (uint64_t nAt = 8; !bytes.bPast;) {
        const uint64_t cbData = bytes.Number(nAt, 4);
        const bool bEnd = bytes.Number(nAt + 4, 4) == 0x49454E44; // "IEND"
        nAt += cbData + 12;                                       // length, type and checksum
        if (bEnd) return bytes.Holds(nAt, 0);
    }
    return false;
}

bool IsWholeJpeg(std::string_view strFile) {
    TBytes bytes{strFile, true};
    bool bScan = false;
    for (uint64_t nAt = 2; !bytes.bPast;) {
        if (bytes.Number(nAt++, 1) != 0xFF) {
            if (!bScan) return false;
            continue; // entropy-coded data
        }
        const uint64_t uMarker = bytes.Number(nAt, 1);
        if (uMarker == 0xFF) continue; // fill byte
        ++nAt;
        if (uMarker == 0xD9) return bScan;
        if (uMarker <= 0x01 || (uMarker >= 0xD0 && uMarker <= 0xD7)) continue; // stuffing, restart
        if (uMarker == 0xDA) bScan = true;
        nAt += bytes.Number(nAt, 2);
    }
    return false;
}

// Skips a chain of data sub-blocks.
void SkipGifBlocks(TBytes& bytes, uint64_t& nAt) {
    while (const uint64_t cbBlock = bytes.Number(nAt++, 1)) nAt += cbBlock;
}

bool IsWholeGif(std::string_view strFile) {
    TBytes bytes{strFile};
    const auto cbColors = [](uint64_t uFlags) { return uFlags & 0x80 ? 3ull << ((uFlags & 7) + 1) : 0ull; };
    bool bImage = false;
    uint64_t nAt = 13 + cbColors(bytes.Number(10, 1));
    while (!bytes.bPast) {
        switch (bytes.Number(nAt++, 1)) {
        case 0x21: // extension and its label
            ++nAt;
            break;
        case 0x2C: // image: rectangle, flags, colours, code size
            nAt += 9 + cbColors(bytes.Number(nAt + 8, 1)) + 1;
            bImage = true;
            break;
        case 0x3B:
            return bImage;
        default:
            return false;
        }
        SkipGifBlocks(bytes, nAt);
    }
    return false;
}

// Follows run-length codes until the end-of-bitmap code or the end of the last row.
bool IsWholeRunLengthBmp(TBytes& bytes, uint64_t nAt, uint64_t nRows, bool bFourBits) {
    for (uint64_t nRow = 0; nRow < nRows; nAt += 2) {
        const uint64_t uCount = bytes.Number(nAt, 1);
        const uint64_t uCode = bytes.Number(nAt + 1, 1);
        if (bytes.bPast) return false;
        if (uCount != 0) continue;
        if (uCode == 1) return true;
        if (uCode == 0) {
            ++nRow;
        } else if (uCode == 2) {
            nRow += bytes.Number(nAt + 3, 1);
            nAt += 2;
        } else {
            const uint64_t cbPixels = bFourBits ? (uCode + 1) / 2 : uCode;
            nAt += (cbPixels + 1) / 2 * 2;
        }
    }
    return bytes.Holds(nAt, 0);
}

bool IsWholeBmp(std::string_view strFile) {
    TBytes bytes{strFile};
    const uint64_t cbHeader = bytes.Number(14, 4);
    const bool bShort = cbHeader == 12;
    const uint64_t nData = std::max(bytes.Number(10, 4), 14 + cbHeader);
    const uint64_t nWidth = bytes.Number(18, bShort ? 2 : 4);
    const uint64_t uHeight = bytes.Number(bShort ? 20 : 22, bShort ? 2 : 4);
    const uint64_t nBits = bytes.Number(bShort ? 24 : 28, 2);
    const uint64_t uCompression = bShort ? 0 : bytes.Number(30, 4);
    if (bytes.bPast) return false;
    // A negative height means rows from the top.
    const uint64_t nRows = !bShort && uHeight >= 0x80000000u ? 0x100000000u - uHeight : uHeight;
    if (uCompression == 1 || uCompression == 2)
        return IsWholeRunLengthBmp(bytes, nData, nRows, uCompression == 2);
    return bytes.Holds(nData, (nWidth * nBits + 31) / 32 * 4 * nRows);
}

// Checks the directory only: the decoder rejects a page with truncated pixels, but not one that lost its
// last tags.
bool IsWholeTiff(std::string_view strFile) {
    // Bytes per value by type; unknown types count as single bytes.
    constexpr uint64_t SIZES[] = {1, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 1, 1, 8, 8, 8};
    TBytes bytes{strFile, strFile.starts_with('M')};
    const bool bBig = bytes.Number(2, 2) == 43;
    const int cbOffset = bBig ? 8 : 4;
    const uint64_t nDirectory = bytes.Number(bBig ? 8 : 4, cbOffset);
    const uint64_t nEntries = bytes.Number(nDirectory, bBig ? 8 : 2);
    uint64_t nAt = nDirectory + (bBig ? 8 : 2);
    for (uint64_t i = 0; i < nEntries && !bytes.bPast; ++i, nAt += bBig ? 20 : 12) {
        const uint64_t uType = bytes.Number(nAt + 2, 2);
        const uint64_t nCount = bytes.Number(nAt + 4, cbOffset);
        const uint64_t cbValue = uType < std::size(SIZES) ? SIZES[uType] : 1;
        if (nCount > strFile.size()) return false;
        if (nCount * cbValue <= static_cast<uint64_t>(cbOffset)) continue; // held in the entry
        if (!bytes.Holds(bytes.Number(nAt + 4 + static_cast<uint64_t>(cbOffset), cbOffset), nCount * cbValue))
            return false;
    }
    bytes.Number(nAt, cbOffset); // offset of the next page
    return !bytes.bPast;
}

} // namespace

EPictureKind KindOfPicture(std::string_view strFile) {
    if (strFile.starts_with("\x89PNG\r\n\x1A\n"sv)) return EPictureKind::Png;
    if (strFile.starts_with("\xFF\xD8\xFF"sv)) return EPictureKind::Jpeg;
    if (strFile.starts_with("GIF87a"sv) || strFile.starts_with("GIF89a"sv)) return EPictureKind::Gif;
    if (strFile.starts_with("BM"sv)) return EPictureKind::Bmp;
    for (const auto strStart : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv})
        if (strFile.starts_with(strStart)) return EPictureKind::Tiff;
    return EPictureKind::Unknown;
}

bool IsWholePicture(std::string_view strFile, EPictureKind kind) {
    switch (kind) {
    case EPictureKind::Png:
        return IsWholePng(strFile);
    case EPictureKind::Jpeg:
        return IsWholeJpeg(strFile);
    case EPictureKind::Bmp:
        return IsWholeBmp(strFile);
    case EPictureKind::Gif:
        return IsWholeGif(strFile);
    case EPictureKind::Tiff:
        return IsWholeTiff(strFile);
    case EPictureKind::Unknown:
        break;
    }
    return false;
}
