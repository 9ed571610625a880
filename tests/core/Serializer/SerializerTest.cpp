#include "core/Serializer/Serializer.h"

#include "core/Base/Failure.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace {

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
