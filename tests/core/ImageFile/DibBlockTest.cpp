#include "core/ImageFile/DibBlock.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <climits>
#include <vector>

namespace {

using TBytes = std::vector<uint8_t>;

void Put(TBytes& v, uint32_t u, int nBytes = 4) {
    for (; nBytes > 0; --nBytes, u >>= 8) v.push_back(static_cast<uint8_t>(u));
}

// A header of any size; masks go behind one of 40 bytes and into a longer one. The size of the picture is
// 2x2.
struct THead {
    uint32_t uSize = 40;
    int32_t nWidth = 2;
    int32_t nHeight = 2;
    uint32_t uBits = 32;
    uint32_t uCompression = 0;
    std::vector<uint32_t> vMasks = {};
    uint32_t uColors = 0;
};

TBytes Block(const THead& head, const TBytes& vPixels) {
    TBytes v;
    for (const uint32_t u :
         {head.uSize, static_cast<uint32_t>(head.nWidth), static_cast<uint32_t>(head.nHeight)})
        Put(v, u);
    Put(v, 1, 2);
    Put(v, head.uBits, 2);
    for (const uint32_t u : {head.uCompression, 0u, 0u, 0u, head.uColors, 0u}) Put(v, u);
    for (const uint32_t u : head.vMasks) Put(v, u);
    if (head.uSize > 40) v.resize(head.uSize);
    v.resize(v.size() + head.uColors * size_t{4});
    v.insert(v.end(), vPixels.begin(), vPixels.end());
    return v;
}

TDibBytes Shared(const TBytes& v) { return boost::make_shared<std::string>(v.begin(), v.end()); }

// The picture's pixels as 0xAARRGGBB, from its top; empty when it was refused.
std::vector<uint32_t> Pixels(const TLoadedPicture& picture) {
    CSize sz;
    TLockedBits bits;
    if (!picture || !picture->GetWidth(sz.cx) || !picture->GetHeight(sz.cy)) return {};
    EXPECT_TRUE(picture->LockBits(CRect({0, 0}, sz), ELockMode::Read, bits));
    std::vector<uint32_t> v;
    for (ptrdiff_t y = 0; y < sz.cy; ++y)
        for (const uint8_t* p = bits.pData + y * bits.nStride;
             v.size() < static_cast<size_t>(sz.cx * (y + 1)); p += 4)
            v.push_back(p[0] | p[1] << 8 | p[2] << 16 | uint32_t{p[3]} << 24);
    picture->UnlockBits();
    return v;
}

std::vector<uint32_t> Read(const THead& head, const TBytes& vPixels) {
    return Pixels(ReadDibBlock(Shared(Block(head, vPixels))));
}

constexpr uint32_t R = 0xFF0000, G = 0xFF00, B = 0xFF, A = 0xFF000000;
const std::vector<uint32_t> PICTURE{0x04030201, 0x08070605, 0x0C0B0A09, 0x000F0E0D};
const TBytes TOP_DOWN{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 0};
const TBytes BOTTOM_UP{9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3, 4, 5, 6, 7, 8};

} // namespace

TEST(DibBlock, ACopiedPictureIsAVersion5BitmapByteByByte) {
    const TDibBlock block = CreateDibBlock({2, 2});
    TLockedBits bits;
    ASSERT_TRUE(block.spPixels->LockBits({0, 0, 2, 2}, ELockMode::Write, bits));
    for (size_t i = 0; i < 16; ++i) bits.pData[static_cast<int>(i / 8) * bits.nStride + i % 8] = TOP_DOWN[i];
    block.spPixels->UnlockBits();
    TBytes v;
    for (const uint32_t u : {124u, 2u, 2u}) Put(v, u);
    Put(v, 1, 2);
    Put(v, 32, 2);
    for (const uint32_t u : {3u, 16u, 3780u, 3780u, 0u, 0u, R, G, B, A, 0x73524742u}) Put(v, u);
    v.resize(108); // end points and gammas, which sRGB does not use
    for (const uint32_t u : {4u, 0u, 0u, 0u}) Put(v, u);
    v.insert(v.end(), BOTTOM_UP.begin(), BOTTOM_UP.end());
    EXPECT_EQ(*block.spBytes, *Shared(v));
    EXPECT_EQ(Pixels(ReadDibBlock(block.spBytes)), PICTURE);
    EXPECT_EQ(*MakeDibBlock(*ReadDibBlock(block.spBytes)), *block.spBytes);
    const TBytes vFile{'B', 'M', 154, 0, 0, 0, 0, 0, 0, 0, 138, 0, 0, 0};
    EXPECT_EQ(MakeBmpFileHeader(*block.spBytes), *Shared(vFile));
}

TEST(DibBlock, EveryFormThatProgramsWriteIsRead) {
    EXPECT_EQ(Read({.nHeight = -2}, TOP_DOWN), PICTURE);
    for (const uint32_t uSize : {56u, 108u, 124u})
        EXPECT_EQ(Read({.uSize = uSize, .uCompression = 3, .vMasks = {R, G, B, A}}, BOTTOM_UP), PICTURE)
            << uSize;
    // Other orders and widths of the channels, of a single pixel.
    const auto pixel = [](const std::vector<uint32_t>& vMasks, const TBytes& v) {
        return Read({108, 1, 1, 32, 3, vMasks}, v).at(0);
    };
    EXPECT_EQ(pixel({B, G, R, A}, {1, 2, 3, 4}), 0x04010203u);
    EXPECT_EQ(pixel({0xF800, 0x7E0, 0x1F, 0x10000}, {0x1F, 0x84, 1, 0}), 0xFF8482FFu) << "5, 6, 5, 1 bits";
    EXPECT_EQ(pixel({0x3FF00000, 0xFFC00, 0x3FF, 0xC0000000}, {0xFF, 3, 8, 0x60}), 0x558080FFu) << "10 bits";
    // 24 bits, rows padded to 4 bytes, an unneeded palette, the last row's padding missing.
    const TBytes v24{4, 5, 6, 0, 1, 2, 3};
    const std::vector<uint32_t> vOpaque{0xFF030201, 0xFF060504};
    EXPECT_EQ(Read({.nWidth = 1, .uBits = 24, .uColors = 3}, v24), vOpaque);
}

TEST(DibBlock, APictureWithoutAlphaIsOpaque) {
    const TBytes vNone{1, 2, 3, 0, 5, 6, 7, 0, 9, 10, 11, 0, 13, 14, 15, 0};
    const std::vector<uint32_t> vOpaque{0xFF030201, 0xFF070605, 0xFF0B0A09, 0xFF0F0E0D};
    EXPECT_EQ(Read({.nHeight = -2}, vNone), vOpaque);
    const THead masked{.uSize = 124, .nHeight = -2, .uCompression = 3, .vMasks = {R, G, B, A}};
    EXPECT_EQ(Read(masked, vNone), vOpaque);
    EXPECT_EQ(Pixels(ReadDibBlock(Shared(Block(masked, vNone)), EZeroAlpha::Transparent))[0], 0x030201u);
    // Three masks, behind a header of 40 bytes or in a longer one: the fourth byte means nothing.
    for (const uint32_t uSize : {40u, 52u, 108u})
        EXPECT_EQ(Read({.uSize = uSize, .nHeight = -2, .uCompression = 3, .vMasks = {R, G, B}}, TOP_DOWN),
                  vOpaque);
}

TEST(DibBlock, AFilesPixelsBeginWhereItsHeaderSays) {
    TBytes v{'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 60, 0, 0, 0};
    const TBytes vBlock = Block({}, {});
    v.insert(v.end(), vBlock.begin(), vBlock.end());
    v.resize(60);
    v.insert(v.end(), BOTTOM_UP.begin(), BOTTOM_UP.end());
    EXPECT_EQ(Pixels(ReadBmpFile(Shared(v))), PICTURE);
    for (const auto& [nAt, uByte] : {std::pair{0, 'X'}, {10, '\x01'}, {10, '\x3D'}, {13, '\x7F'}}) {
        TBytes vBad = v;
        vBad[static_cast<size_t>(nAt)] = static_cast<uint8_t>(uByte);
        EXPECT_FALSE(ReadBmpFile(Shared(vBad))) << nAt;
    }
    v.resize(13);
    EXPECT_FALSE(ReadBmpFile(Shared(v)));
}

TEST(DibBlock, WhatIsNoBlockIsRefusedWithTheReason) {
    const auto expect = [](EFileFailure failure, const std::vector<THead>& vHeads) {
        for (size_t i = 0; i < vHeads.size(); ++i) {
            const TLoadedPicture picture = ReadDibBlock(Shared(Block(vHeads[i], BOTTOM_UP)));
            EXPECT_TRUE(!picture && picture.failure == failure) << static_cast<int>(failure) << ' ' << i;
        }
    };
    constexpr uint32_t FIELDS = 3;
    expect(EFileFailure::UnknownPicture, {{12}, {64}, {40, 2, 2, 16}, {40, 2, 2, 8}, {40, 2, 2, 0}});
    expect(EFileFailure::UnknownPicture, {{40, 2, 2, 24, FIELDS}, {40, 2, 2, 32, 1}, {40, 2, 2, 32, ~0u}});
    expect(EFileFailure::PictureTooLarge, {{40, 2, INT_MIN}, {40, 2, INT_MAX}, {40, INT_MAX, 2}});
    expect(EFileFailure::PictureTooLarge, {{40, 32768, 1}, {40, 2, -32768}, {40, 32767, 32767}});
    expect(EFileFailure::DamagedPicture, {{40, 0, 2}, {40, -2, 2}, {40, INT_MIN, 2}, {40, 2, 0}});
    expect(EFileFailure::DamagedPicture, {{40, 3, 2}, {40, 2, 3}, {40, 2, -3}, {40, 16383, 32767}});
    for (const auto& vMasks : {std::vector{R, 0u, B, A}, {R, G, 0xF00FFu, A}, {R, G, B, B}, {R | B, G, B, A}})
        expect(EFileFailure::DamagedPicture, {{124, 2, 2, 32, FIELDS, vMasks}});
    // Another number of planes, the length of a palette that is not there, and every length that is too
    // short.
    TBytes v = Block({124, 2, 2, 32, FIELDS, {R, G, B, A}}, BOTTOM_UP);
    for (const size_t nAt : {12, 35}) {
        TBytes vBad = v;
        vBad[nAt] ^= 0xFF;
        EXPECT_FALSE(ReadDibBlock(Shared(vBad))) << nAt;
    }
    while (!v.empty()) {
        v.pop_back();
        ASSERT_FALSE(ReadDibBlock(Shared(v))) << v.size();
    }
}
