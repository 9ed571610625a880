#include "core/Base/Failure.h"
#include "tests/support/ProjectBytes.h"

namespace {

struct CCountingPart : IWirePart {
    explicit CCountingPart(size_t n) : m_n(n) {}
    size_t GetWireSize() const override { return m_n; }
    void WriteWire(uint8_t* pTo) const override { std::iota(pTo, pTo + m_n, uint8_t{1}); }
    size_t m_n;
};

CSerializer MakeChunk(const char (&pszTag)[5], uint32_t uVersion) {
    CSerializer chunk;
    chunk.SetTag(MakeTag(pszTag), uVersion);
    return chunk;
}

} // namespace

TEST(Serializer, ChunksAreBigEndianAndComeBackButNotCutNorWithAWrongLength) {
    const std::wstring str = L"線\U0001F58B\xDC00\xD800z\xDBFF";
    CSerializer outer = MakeChunk("OUTR", 0x01020304);
    outer.WriteInt32(-2);
    outer.WriteBool(true);
    CSerializer inner = MakeChunk("INNR", 7);
    inner.WriteString(str);
    outer.WriteChunk(inner);
    outer.WriteByte(9);
    const TBytes vWhole = FileOf(outer);
    EXPECT_EQ(vWhole,
              (TBytes{'O', 'U',  'T',  'R',  1,    2,    3,    4,    0, 0,    0, 36, 0xFF, 0xFF, 0xFF, 0xFE,
                      1,   'I',  'N',  'N',  'R',  0,    0,    0,    7, 0,    0, 0,  18,   0,    0,    0,
                      7,   0x7D, 0xDA, 0xD8, 0x3D, 0xDD, 0x8B, 0xDC, 0, 0xD8, 0, 0,  'z',  0xDB, 0xFF, 9}));
    const auto readAll = [&](const TBytes& vBytes) {
        CDeserializer top = OpenChunk(vBytes);
        top.ExpectTag(MakeTag("OUTR"));
        EXPECT_EQ(top.GetVersion(), 0x01020304u);
        EXPECT_EQ(top.ReadInt32(), -2);
        EXPECT_TRUE(top.ReadBool());
        CDeserializer chunk;
        top.ReadChunk(chunk);
        EXPECT_EQ(chunk.ReadString(), str);
        chunk.ExpectEnd();
        EXPECT_EQ(top.ReadByte(), 9);
        top.ExpectEnd();
    };
    EXPECT_NO_THROW(readAll(vWhole));
    for (size_t n = 0; n < vWhole.size(); ++n)
        EXPECT_THROW(readAll(TBytes(vWhole.begin(), vWhole.begin() + static_cast<ptrdiff_t>(n))),
                     deserialize_error);
    for (const size_t nLengthField : {8, 25, 29})
        for (const uint8_t uByte : {0x7F, 0xFF}) {
            TBytes vBytes = vWhole;
            vBytes[nLengthField] = uByte;
            EXPECT_THROW(readAll(vBytes), deserialize_error) << nLengthField;
        }
}

TEST(Serializer, AttachedChunksGoAlongAndDoNotChangeTheirOwner) {
    const auto make = [](bool bAttach) {
        CSerializer outer = MakeChunk("OUTR", 0);
        for (const uint8_t u : {1, 2, 3}) {
            CSerializer inner = MakeChunk("INNR", 0);
            inner.WriteByte(u);
            for (const uint8_t uMore : {10, 20}) {
                CSerializer more = uMore == 10 ? MakeChunk("TENS", 4) : MakeChunk("LATE", 0);
                more.WriteByte(static_cast<uint8_t>(u + uMore));
                if (bAttach && u != 2) inner.Attach(more);
            }
            outer.WriteChunk(inner);
        }
        return outer;
    };
    const TBytes vPlain = FileOf(make(false)), vWhole = FileOf(make(true));
    ASSERT_GT(vWhole.size(), vPlain.size());
    EXPECT_TRUE(std::equal(vPlain.begin(), vPlain.end(), vWhole.begin()));
    EXPECT_EQ(make(true).GetPayload(), make(false).GetPayload());
    EXPECT_NE(make(true).GetWhole(), make(false).GetWhole());
    const auto found = [](CDeserializer outer) {
        std::vector<int> vFound;
        for (int n = 0; n < 3; ++n) {
            CDeserializer inner, more;
            outer.ReadChunk(inner);
            for (const char* psz : {"LATE", "TENS", "NONE"})
                vFound.push_back(inner.FindAttached(MakeTag({psz[0], psz[1], psz[2], psz[3], 0}), more)
                                     ? more.ReadByte()
                                     : 0);
            EXPECT_EQ(inner.ReadByte(), n + 1);
            inner.ExpectEnd();
        }
        return vFound;
    };
    const std::vector<int> vExpected{21, 11, 0, 0, 0, 0, 23, 13, 0};
    EXPECT_EQ(found(OpenChunk(vWhole)), vExpected);
    EXPECT_EQ(found(CDeserializer(make(true))), vExpected);
    // A reader that does not ask for them has none; a list that is cut or too long is refused.
    CDeserializer file(boost::make_shared<TBytes>(vWhole)), top;
    file.ReadChunk(top);
    EXPECT_EQ(found(top), std::vector<int>(9));
    for (size_t n = vPlain.size() + CHUNK_HEADER; n < vWhole.size(); ++n)
        EXPECT_THROW(OpenChunk({vWhole.data(), vWhole.data() + n}), deserialize_error) << n;
    TBytes vLong = vWhole;
    vLong[vPlain.size() + CHUNK_HEADER + 4 + 11] = 2; // the first one's length
    EXPECT_THROW(OpenChunk(vLong), deserialize_error);
}

TEST(Serializer, MoreThanLengthsCanTellIsRefused) {
    CSerializer chunk = MakeChunk("MANY", 1);
    const uint64_t uRoom = uint64_t{UINT32_MAX} - CHUNK_HEADER;
    EXPECT_THROW(chunk.WritePart(boost::make_shared<CCountingPart>(uRoom + 1)), refused_error);
}

TEST(Serializer, PartsStandWhereTheyWereWrittenHoweverTheChunkIsRead) {
    // Runs and parts on both sides of what is copied, gathered or handed on.
    for (const size_t n : {size_t{1}, size_t{5000}, size_t{300000}}) {
        CSerializer inner = MakeChunk("INNR", 7);
        inner.WriteByte(0xAA);
        inner.WritePart(boost::make_shared<CCountingPart>(n));
        inner.WriteBytes(TBytes(n, 0xBB).data(), n);
        CSerializer outer;
        outer.WriteChunk(inner);
        outer.WriteChunk(inner);
        outer.WriteByte(0xCC);
        TBytes vPart(n);
        CCountingPart(n).WriteWire(vPart.data());
        const TBytes vWhole = outer.GetPayload();
        ASSERT_EQ(outer.GetLength(), vWhole.size());
        std::string strOut;
        EXPECT_TRUE(outer.WriteOut([&](std::string_view str) { return strOut += str, true; }));
        EXPECT_TRUE(TBytes(strOut.begin(), strOut.end()) == vWhole);
        int nCalls = 0;
        EXPECT_FALSE(outer.WriteOut([&](std::string_view) { return ++nCalls, false; }));
        EXPECT_EQ(nCalls, 1);
        for (const bool bBytes : {false, true}) {
            CDeserializer top =
                bBytes ? CDeserializer(boost::make_shared<TBytes>(vWhole)) : CDeserializer(outer);
            for (const bool bAsPart : {true, false}) {
                CDeserializer chunk;
                top.ReadChunk(chunk);
                EXPECT_EQ(chunk.GetDepth(), 1u);
                EXPECT_EQ(chunk.ReadByte(), 0xAA);
                const bool bFound = bAsPart && chunk.ReadPart(n);
                EXPECT_EQ(bFound, bAsPart && !bBytes);
                EXPECT_TRUE(bFound || std::equal(vPart.begin(), vPart.end(), chunk.ReadBytes(n)));
                EXPECT_EQ(chunk.ReadBytes(n)[n - 1], 0xBB);
                chunk.ExpectEnd();
            }
            EXPECT_EQ(top.ReadByte(), 0xCC);
        }
    }
}

TEST(Serializer, ForeignBytesClaimOnlyWhatFitsThem) {
    CDeserializer foreign(boost::make_shared<TBytes>(1 << 20));
    foreign.Claim(uint64_t{256} << 20);
    foreign.Claim(15 << 20);
    EXPECT_THROW(foreign.Claim(2 << 20), deserialize_error);
    EXPECT_NO_THROW(CDeserializer(MakeChunk("INNR", 7)).Claim(uint64_t{1} << 40));
}
