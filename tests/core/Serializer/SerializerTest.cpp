#include "core/Serializer/Serializer.h"

#include "core/Base/Failure.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <numeric>

namespace {

// A part of `n` bytes that count up from 1.
struct CCountingPart : IWirePart {
    explicit CCountingPart(size_t n) : m_n(n) {}
    size_t GetWireSize() const override { return m_n; }
    void WriteWire(uint8_t* pTo) const override { std::iota(pTo, pTo + m_n, uint8_t{1}); }
    size_t m_n;
};

// A file image of one chunk with an inner one.
CSerializer MakeChunk() {
    CSerializer inner;
    inner.SetTag(MakeTag("INNR"), 7);
    inner.WriteString(L"線\U0001F58B");
    CSerializer outer;
    outer.SetTag(MakeTag("OUTR"), 1);
    outer.WriteInt32(-2);
    outer.WriteBool(true);
    outer.WriteChunk(inner);
    outer.WriteByte(9);
    return outer;
}

CDeserializer OpenChunk(const TBytes& vBytes) {
    CDeserializer file(boost::make_shared<TBytes>(vBytes));
    CDeserializer top;
    file.ReadChunk(top);
    return top;
}

TBytes FileOf(const CSerializer& chunk) {
    CSerializer file;
    file.WriteChunk(chunk);
    return file.GetPayload();
}

} // namespace

TEST(Serializer, WritesBigEndianChunks) {
    CSerializer chunk;
    chunk.SetTag(MakeTag("ABCD"), 0x01020304);
    chunk.WriteInt32(-2);
    chunk.WriteString(L"\U00010000");
    const TBytes vExpected = {'A',  'B',  'C',  'D',  1, 2, 3, 4, 0,    0,    0,    12,
                              0xFF, 0xFF, 0xFF, 0xFE, 0, 0, 0, 2, 0xD8, 0x00, 0xDC, 0x00};
    EXPECT_EQ(FileOf(chunk), vExpected);
}

TEST(Serializer, ReadsWhatItWrote) {
    CDeserializer top = OpenChunk(FileOf(MakeChunk()));
    top.ExpectTag(MakeTag("OUTR"));
    EXPECT_EQ(top.GetVersion(), 1u);
    EXPECT_EQ(top.ReadInt32(), -2);
    EXPECT_TRUE(top.ReadBool());
    CDeserializer inner;
    top.ReadChunk(inner);
    EXPECT_EQ(inner.GetVersion(), 7u);
    EXPECT_EQ(inner.ReadString(), L"線\U0001F58B");
    inner.ExpectEnd();
    EXPECT_THROW(top.ExpectEnd(), deserialize_error);
    EXPECT_EQ(top.ReadByte(), 9);
    top.ExpectEnd();
    EXPECT_THROW(top.ReadByte(), deserialize_error);
}

TEST(Serializer, EveryCutAndEveryWrongLengthIsRefused) {
    const TBytes vWhole = FileOf(MakeChunk());
    const auto readAll = [](const TBytes& vBytes) {
        CDeserializer top = OpenChunk(vBytes);
        top.ReadInt32();
        top.ReadBool();
        CDeserializer inner;
        top.ReadChunk(inner);
        inner.ReadString();
        inner.ExpectEnd();
        top.ReadByte();
        top.ExpectEnd();
    };
    EXPECT_NO_THROW(readAll(vWhole));
    for (size_t n = 0; n < vWhole.size(); ++n)
        EXPECT_THROW(readAll(TBytes(vWhole.begin(), vWhole.begin() + static_cast<ptrdiff_t>(n))),
                     deserialize_error);
    for (const size_t nLengthField : {size_t{8}, size_t{25}, size_t{29}}) {
        for (const uint8_t uByte : {uint8_t{0x7F}, uint8_t{0xFF}}) {
            TBytes vBytes = vWhole;
            vBytes[nLengthField] = uByte;
            EXPECT_THROW(readAll(vBytes), deserialize_error) << nLengthField;
        }
    }
}

TEST(Serializer, PartsStandWhereTheyWereWrittenHoweverTheChunkIsRead) {
    // Runs and parts on both sides of what is copied, gathered or handed on.
    for (const size_t n : {size_t{1}, size_t{5000}, size_t{300000}}) {
        CSerializer inner;
        inner.SetTag(MakeTag("INNR"), 7);
        inner.WriteByte(0xAA);
        inner.WritePart(boost::make_shared<CCountingPart>(n));
        inner.WriteBytes(TBytes(n, 0xBB).data(), n);
        CSerializer outer;
        outer.WriteInt32(1);
        outer.WriteChunk(inner);
        outer.WriteChunk(inner);
        outer.WriteByte(0xCC);
        TBytes vPart(n);
        CCountingPart(n).WriteWire(vPart.data());
        const TBytes vWhole = outer.GetPayload();
        ASSERT_EQ(outer.GetLength(), vWhole.size());
        std::string strOut;
        EXPECT_TRUE(outer.WriteOut([&](std::string_view str) { return strOut += str, true; }));
        EXPECT_TRUE(std::equal(strOut.begin(), strOut.end(), vWhole.begin(), vWhole.end(),
                               [](char ch, uint8_t u) { return static_cast<uint8_t>(ch) == u; }));
        int nCalls = 0;
        EXPECT_FALSE(outer.WriteOut([&](std::string_view) { return ++nCalls, false; }));
        EXPECT_EQ(nCalls, 1);
        for (const bool bBytes : {false, true}) {
            CDeserializer top =
                bBytes ? CDeserializer(boost::make_shared<TBytes>(vWhole)) : CDeserializer(outer);
            EXPECT_EQ(top.ReadInt32(), 1);
            for (const bool bAsPart : {true, false}) {
                CDeserializer chunk;
                top.ReadChunk(chunk);
                EXPECT_EQ(chunk.GetDepth(), 1u);
                EXPECT_EQ(chunk.ReadByte(), 0xAA);
                const bool bFound = bAsPart && chunk.ReadPart(n);
                EXPECT_EQ(bFound, bAsPart && !bBytes);
                if (!bFound) {
                    const uint8_t* p = chunk.ReadBytes(n);
                    EXPECT_TRUE(std::equal(vPart.begin(), vPart.end(), p));
                }
                EXPECT_EQ(chunk.ReadBytes(n)[n - 1], 0xBB);
                chunk.ExpectEnd();
            }
            EXPECT_EQ(top.ReadByte(), 0xCC);
        }
    }
}

TEST(Serializer, LoneSurrogatesSurvive) {
    const std::wstring str{L'a', static_cast<wchar_t>(0xDC00), static_cast<wchar_t>(0xD800), L'b',
                           static_cast<wchar_t>(0xDBFF)};
    CSerializer chunk;
    chunk.WriteString(str);
    EXPECT_EQ(CDeserializer(chunk).ReadString(), str);
}

TEST(Serializer, ForeignBytesClaimOnlyWhatFitsThem) {
    CDeserializer foreign(boost::make_shared<TBytes>(1 << 20));
    foreign.Claim(uint64_t{256} << 20);
    foreign.Claim(15 << 20);
    EXPECT_THROW(foreign.Claim(2 << 20), deserialize_error);
    EXPECT_NO_THROW(CDeserializer(MakeChunk()).Claim(uint64_t{1} << 40));
}
