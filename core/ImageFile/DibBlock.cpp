#include "core/ImageFile/DibBlock.h"

#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasBuffer.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <utility>

namespace {

constexpr uint32_t V5_HEADER = 124; ///< bytes
constexpr size_t FILE_HEADER = 14;
constexpr uint32_t BI_RGB = 0;
constexpr uint32_t BI_BITFIELDS = 3;
constexpr uint32_t COLORSPACE_SRGB = 0x73524742; ///< LCS_sRGB
constexpr uint32_t INTENT_IMAGES = 4;            ///< LCS_GM_IMAGES
constexpr uint32_t DOTS_PER_METRE = 3780;        ///< 96 dots per inch
constexpr uint64_t MAX_PIXEL_BYTES = uint64_t{2} << 30;

/// The fields of the header that are used here, by their offsets. The masks follow a header of 40 bytes,
/// and belong to a longer one, at the same place.
enum EField : size_t {
    FIELD_SIZE = 0,
    FIELD_WIDTH = 4,
    FIELD_HEIGHT = 8,
    FIELD_PLANES = 12, ///< 16 bits
    FIELD_BITS = 14,   ///< 16 bits
    FIELD_COMPRESSION = 16,
    FIELD_IMAGE_BYTES = 20,
    FIELD_DOTS_X = 24,
    FIELD_DOTS_Y = 28,
    FIELD_COLORS_USED = 32,
    FIELD_MASKS = 40, ///< red, green, blue; alpha in headers from 56 bytes on
    FIELD_COLORSPACE = 56,
    FIELD_INTENT = 108,
};

/// Red, green, blue, alpha of this application's pixels, which lie in memory as B, G, R, A.
constexpr std::array<uint32_t, 4> OWN_MASKS{0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000};

struct parse_error : std::exception {
    explicit parse_error(EFileFailure why) : failure(why) {}
    EFileFailure failure;
};

[[noreturn]] void Refuse(EFileFailure failure) { throw parse_error(failure); }

uint32_t Load(const uint8_t* p, size_t nBytes) {
    uint32_t u = 0;
    for (size_t i = nBytes; i-- > 0;) u = u << 8 | p[i];
    return u;
}

void Store(char* p, size_t nBytes, uint32_t u) {
    for (size_t i = 0; i < nBytes; ++i, u >>= 8) p[i] = static_cast<char>(u & 0xFF);
}

uint32_t LoadAt(std::string_view strBytes, size_t nAt, size_t nBytes = 4) {
    if (nAt > strBytes.size() || strBytes.size() - nAt < nBytes) Refuse(EFileFailure::DamagedPicture);
    return Load(reinterpret_cast<const uint8_t*>(strBytes.data()) + nAt, nBytes);
}

/// Pixels B, G, R, A inside bytes that others may hold too.
class CDibBitmap : public IBitmap {
public:
    /// `nStride` leads from a row to the one below it; the first row begins at offset `nTop`.
    CDibBitmap(TDibBytes spBytes, size_t nTop, ptrdiff_t nStride, CSize sz, bool bMayWrite)
        : m_spBytes(std::move(spBytes)), m_nTop(nTop), m_nStride(nStride), m_size(sz),
          m_bMayWrite(bMayWrite) {}

    bool GetWidth(int32_t& nWidth) override {
        nWidth = m_size.cx;
        return true;
    }
    bool GetHeight(int32_t& nHeight) override {
        nHeight = m_size.cy;
        return true;
    }
    bool LockBits(const CRect& rc, ELockMode mode, TLockedBits& bits) override {
        if (m_bLocked || rc.IsEmpty() || rc.Intersect(CRect({0, 0}, m_size)) != rc) return false;
        if (mode == ELockMode::Write && !m_bMayWrite) return false;
        auto* pTop = reinterpret_cast<uint8_t*>(const_cast<char*>(m_spBytes->data())) + m_nTop;
        bits.nStride = static_cast<int>(m_nStride);
        bits.pData = pTop + rc.top * m_nStride + static_cast<ptrdiff_t>(rc.left) * 4;
        return m_bLocked = true;
    }
    bool UnlockBits() override { return std::exchange(m_bLocked, false); }

private:
    const TDibBytes m_spBytes;
    const size_t m_nTop;
    const ptrdiff_t m_nStride;
    const CSize m_size;
    const bool m_bMayWrite;
    bool m_bLocked = false;
};

/// The place of a block's pixels and the way they are written.
struct TDibForm {
    CSize size;
    bool bBottomUp = true;
    uint64_t uPixels = 0; ///< offset of the first row in memory
    size_t nPixelBytes = 4;
    size_t nStride = 0;
    std::array<uint32_t, 4> aMasks{}; ///< red, green, blue, alpha; alpha 0 for none

    size_t OffsetOf(int32_t y) const {
        return static_cast<size_t>(uPixels) + nStride * static_cast<size_t>(bBottomUp ? size.cy - 1 - y : y);
    }
};

// A mask is one run of bits. The colours need theirs, and no two share a bit.
void CheckMasks(const std::array<uint32_t, 4>& aMasks) {
    uint32_t uUsed = 0;
    for (size_t i = 0; i < aMasks.size(); ++i) {
        const uint32_t uMask = aMasks[i];
        if (uMask == 0 && i == 3) continue;
        const uint32_t uRun = uMask ? uMask >> std::countr_zero(uMask) : 0;
        if (uMask == 0 || (uRun & (uRun + 1)) != 0 || (uUsed & uMask) != 0)
            Refuse(EFileFailure::DamagedPicture);
        uUsed |= uMask;
    }
}

std::array<uint32_t, 4> ReadMasks(std::string_view strBlock, uint32_t uHeader, uint32_t uCompression) {
    std::array<uint32_t, 4> aMasks = OWN_MASKS;
    if (uCompression == BI_RGB) return aMasks;
    const size_t nMasks = uHeader < 56 ? 3 : 4;
    aMasks[3] = 0;
    for (size_t i = 0; i < nMasks; ++i) aMasks[i] = LoadAt(strBlock, FIELD_MASKS + i * 4);
    CheckMasks(aMasks);
    return aMasks;
}

TDibForm ReadForm(std::string_view strBlock) {
    const uint32_t uHeader = LoadAt(strBlock, FIELD_SIZE);
    constexpr uint32_t HEADERS[] = {40, 52, 56, 108, V5_HEADER};
    if (std::ranges::find(HEADERS, uHeader) == std::end(HEADERS)) Refuse(EFileFailure::UnknownPicture);
    LoadAt(strBlock, uHeader - 4); // all of the header is there
    const int64_t nWidth = static_cast<int32_t>(LoadAt(strBlock, FIELD_WIDTH));
    const int64_t nHeight = static_cast<int32_t>(LoadAt(strBlock, FIELD_HEIGHT));
    const uint32_t uBits = LoadAt(strBlock, FIELD_BITS, 2);
    const uint32_t uCompression = LoadAt(strBlock, FIELD_COMPRESSION);
    if (nWidth < 1 || nHeight == 0 || LoadAt(strBlock, FIELD_PLANES, 2) != 1)
        Refuse(EFileFailure::DamagedPicture);
    const bool bFields = uCompression == BI_BITFIELDS;
    if ((uBits != 24 && uBits != 32) || (uCompression != BI_RGB && (!bFields || uBits != 32)))
        Refuse(EFileFailure::UnknownPicture);
    const int64_t nRows = std::abs(nHeight);
    if (nWidth > MAX_DOCUMENT_SIDE || nRows > MAX_DOCUMENT_SIDE ||
        static_cast<uint64_t>(nWidth * nRows) * 4 > MAX_PIXEL_BYTES)
        Refuse(EFileFailure::PictureTooLarge);
    TDibForm form{{static_cast<int32_t>(nWidth), static_cast<int32_t>(nRows)}, nHeight > 0};
    form.aMasks = ReadMasks(strBlock, uHeader, uCompression);
    if (uBits == 24) form.aMasks[3] = 0;
    form.nPixelBytes = uBits / 8;
    form.nStride = (static_cast<size_t>(nWidth) * form.nPixelBytes + 3) / 4 * 4;
    const uint64_t uPalette = uint64_t{LoadAt(strBlock, FIELD_COLORS_USED)} * 4;
    form.uPixels = uHeader + (bFields && uHeader == FIELD_MASKS ? 12 : 0) + uPalette;
    return form;
}

uint8_t ReadChannel(uint32_t uPixel, uint32_t uMask) {
    const int nShift = std::countr_zero(uMask);
    const uint64_t uMost = uMask >> nShift;
    const uint64_t u = (uPixel & uMask) >> nShift;
    return static_cast<uint8_t>(uMost == 255 ? u : (u * 255 + uMost / 2) / uMost);
}

// Converts a row to B, G, R, A; the alpha is 255 where the form has none.
void ReadRow(const uint8_t* pFrom, const TDibForm& form, char* pTo) {
    for (int32_t x = 0; x < form.size.cx; ++x, pFrom += form.nPixelBytes, pTo += 4) {
        const uint32_t uPixel = Load(pFrom, form.nPixelBytes);
        for (size_t i = 0; i < 3; ++i) pTo[2 - i] = static_cast<char>(ReadChannel(uPixel, form.aMasks[i]));
        pTo[3] = static_cast<char>(form.aMasks[3] ? ReadChannel(uPixel, form.aMasks[3]) : 255);
    }
}

bool HasAlpha(const uint8_t* pBytes, const TDibForm& form) {
    for (int32_t y = 0; y < form.size.cy; ++y) {
        const uint8_t* pRow = pBytes + form.OffsetOf(y);
        for (int32_t x = 0; x < form.size.cx; ++x)
            if (Load(pRow + static_cast<size_t>(x) * 4, 4) & form.aMasks[3]) return true;
    }
    return false;
}

boost::shared_ptr<IBitmap> ReadPixels(const TDibBytes& spBytes, TDibForm form, EZeroAlpha zero) {
    // The last row's padding may be missing.
    const size_t nRow = static_cast<size_t>(form.size.cx) * form.nPixelBytes;
    const uint64_t uEnd =
        form.uPixels + uint64_t{form.nStride} * static_cast<uint64_t>(form.size.cy - 1) + nRow;
    if (uEnd > spBytes->size()) Refuse(EFileFailure::DamagedPicture);
    const auto* pBytes = reinterpret_cast<const uint8_t*>(spBytes->data());
    if (form.aMasks[3] && zero == EZeroAlpha::Opaque && !HasAlpha(pBytes, form)) form.aMasks[3] = 0;
    if (form.aMasks == OWN_MASKS) {
        const auto nStride = static_cast<ptrdiff_t>(form.nStride);
        return boost::make_shared<CDibBitmap>(spBytes, form.OffsetOf(0), form.bBottomUp ? -nStride : nStride,
                                              form.size, false);
    }
    const size_t nOwnRow = static_cast<size_t>(form.size.cx) * 4;
    const auto spOwn = boost::make_shared<std::string>(nOwnRow * static_cast<size_t>(form.size.cy), '\0');
    for (int32_t y = 0; y < form.size.cy; ++y)
        ReadRow(pBytes + form.OffsetOf(y), form, spOwn->data() + nOwnRow * static_cast<size_t>(y));
    return boost::make_shared<CDibBitmap>(spOwn, 0, static_cast<ptrdiff_t>(nOwnRow), form.size, true);
}

} // namespace

TDibBlock CreateDibBlock(CSize sz) {
    SELF_CHECK(invalid_argument,
               sz.cx > 0 && sz.cy > 0 && sz.cx <= MAX_DOCUMENT_SIDE && sz.cy <= MAX_DOCUMENT_SIDE);
    const size_t nRow = static_cast<size_t>(sz.cx) * 4;
    const size_t nPixels = nRow * static_cast<size_t>(sz.cy);
    const auto spBytes = boost::make_shared<std::string>(V5_HEADER + nPixels, '\0');
    const auto set = [&](size_t nAt, uint32_t u, size_t nBytes = 4) {
        Store(spBytes->data() + nAt, nBytes, u);
    };
    set(FIELD_SIZE, V5_HEADER);
    set(FIELD_WIDTH, static_cast<uint32_t>(sz.cx));
    set(FIELD_HEIGHT, static_cast<uint32_t>(sz.cy));
    set(FIELD_PLANES, 1, 2);
    set(FIELD_BITS, 32, 2);
    set(FIELD_COMPRESSION, BI_BITFIELDS);
    set(FIELD_IMAGE_BYTES, static_cast<uint32_t>(nPixels));
    set(FIELD_DOTS_X, DOTS_PER_METRE);
    set(FIELD_DOTS_Y, DOTS_PER_METRE);
    for (size_t i = 0; i < OWN_MASKS.size(); ++i) set(FIELD_MASKS + i * 4, OWN_MASKS[i]);
    set(FIELD_COLORSPACE, COLORSPACE_SRGB);
    set(FIELD_INTENT, INTENT_IMAGES);
    return {spBytes, boost::make_shared<CDibBitmap>(spBytes, V5_HEADER + nPixels - nRow,
                                                    -static_cast<ptrdiff_t>(nRow), sz, true)};
}

TDibBytes MakeDibBlock(IBitmap& bitmap) {
    CSize sz;
    TLockedBits from;
    if (!bitmap.GetWidth(sz.cx) || !bitmap.GetHeight(sz.cy)) return nullptr;
    if (std::max(sz.cx, sz.cy) > MAX_DOCUMENT_SIDE) return nullptr;
    if (!bitmap.LockBits(CRect({0, 0}, sz), ELockMode::Read, from)) return nullptr;
    struct CUnlock {
        ~CUnlock() { bitmap.UnlockBits(); }
        IBitmap& bitmap;
    } const unlock{bitmap};
    const TDibBlock block = CreateDibBlock(sz);
    TLockedBits to;
    block.spPixels->LockBits(CRect({0, 0}, sz), ELockMode::Write, to);
    for (ptrdiff_t y = 0; y < sz.cy; ++y)
        std::memcpy(to.pData + y * to.nStride, from.pData + y * from.nStride, static_cast<size_t>(sz.cx) * 4);
    return block.spBytes;
}

TLoadedPicture ReadDibBlock(const TDibBytes& spBlock, EZeroAlpha zero) try {
    return ReadPixels(spBlock, ReadForm(*spBlock), zero);
} catch (const parse_error& e) {
    return e.failure;
} catch (const std::bad_alloc&) {
    return EFileFailure::NoMemory;
}

TLoadedPicture ReadBmpFile(const TDibBytes& spFile) try {
    const std::string_view strFile = *spFile;
    if (!strFile.starts_with("BM") || strFile.size() < FILE_HEADER) return EFileFailure::UnknownPicture;
    TDibForm form = ReadForm(strFile.substr(FILE_HEADER));
    // The file header says where the pixels begin: not always directly behind palette and masks.
    form.uPixels = LoadAt(strFile, 10);
    if (form.uPixels < FILE_HEADER + FIELD_MASKS) Refuse(EFileFailure::DamagedPicture);
    return ReadPixels(spFile, form, EZeroAlpha::Opaque);
} catch (const parse_error& e) {
    return e.failure;
} catch (const std::bad_alloc&) {
    return EFileFailure::NoMemory;
}

std::string MakeBmpFileHeader(const std::string& strBlock) {
    std::string strHeader(FILE_HEADER, '\0');
    strHeader[0] = 'B';
    strHeader[1] = 'M';
    Store(strHeader.data() + 2, 4, static_cast<uint32_t>(FILE_HEADER + strBlock.size()));
    Store(strHeader.data() + 10, 4, static_cast<uint32_t>(FILE_HEADER + V5_HEADER));
    return strHeader;
}
