#include "core/ImageFile/DibBlock.h"
#include "core/PathSelect/StrokeForms.h"
#include "session/seam/SessionClipboard.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/Paths.h"

#include <gmock/gmock.h>

namespace {

class Clipboard : public testing::Test, protected CScriptedSession {
protected:
    boost::shared_ptr<IBitmap> MakePicture(const std::array<uint8_t, 8>& aBytes) {
        const auto spBitmap = m_codecs.CreateBitmap({2, 1});
        TLockedBits bits;
        spBitmap->LockBits({0, 0, 2, 1}, ELockMode::Write, bits);
        std::copy(aBytes.begin(), aBytes.end(), bits.pData);
        spBitmap->UnlockBits();
        return spBitmap;
    }
    static std::array<uint8_t, 8> Bytes(const boost::shared_ptr<IBitmap>& spBitmap) {
        std::array<uint8_t, 8> aBytes{};
        TLockedBits bits;
        if (!spBitmap || !spBitmap->LockBits({0, 0, 2, 1}, ELockMode::Read, bits)) return aBytes;
        std::copy_n(bits.pData, 8, aBytes.begin());
        spBitmap->UnlockBits();
        return aBytes;
    }
    static constexpr std::array<uint8_t, 8> PIXELS{1, 2, 3, 255, 40, 50, 60, 70};
    inline static const std::string SET = "{\"clipboard\":{\"set\":\"a.png\"}}\n";
    inline static const std::string CLEAR = "{\"clipboard\":{\"clear\":true}}\n";
    inline static const std::string GET = "{\"clipboard\":{\"get\":\"b.png\"}}\n";
};

TEST_F(Clipboard, AScriptPutsAPictureThereAndTakesItWithItsAlpha) {
    ASSERT_TRUE(m_codecs.Save(L"a.png", *MakePicture(PIXELS)));
    EXPECT_EQ(Play(SET + GET), "");
    EXPECT_EQ(Bytes(m_codecs.Load(L"b.png")), PIXELS);
    EXPECT_EQ(Play(SET + CLEAR + GET), "s:3: there is no picture on the clipboard");
    EXPECT_EQ(Play(R"({"clipboard":{"set":"none.png"}})"),
              "s:1: the picture for the clipboard cannot be read");
    EXPECT_EQ(Play(R"({"clipboard":{"set":"data:image/png;base64,AAAA"}})"),
              "s:1: the picture for the clipboard cannot be read");
}

TEST_F(Clipboard, ABlockIsPutThereAndTakenByteByByteReadableOrNot) {
    const std::string strGet = "{\"clipboard\":{\"getBlock\":\"b.dib\"}}\n";
    const std::string strSet = "{\"clipboard\":{\"setBlock\":\"a.dib\"}}\n";
    std::string& strBlock = m_files.m_mapFiles[L"a.dib"] = *MakeDibBlock(*MakePicture(PIXELS));
    EXPECT_EQ(Play(strSet + strGet + GET), "");
    EXPECT_EQ(m_files.m_mapFiles[L"b.dib"], strBlock);
    EXPECT_EQ(Bytes(m_codecs.Load(L"b.png")), PIXELS);
    EXPECT_EQ(Play(strSet + CLEAR + strGet), "s:3: there is no picture on the clipboard");
    ASSERT_TRUE(m_codecs.Save(L"a.png", *MakePicture(PIXELS)));
    m_files.m_mapFiles.erase(L"b.dib");
    EXPECT_EQ(Play(strSet + SET + strGet), "");
    EXPECT_EQ(m_files.m_mapFiles[L"b.dib"], strBlock);
    EXPECT_EQ(Play(R"({"clipboard":{"setBlock":"none.dib"}})"),
              "s:1: the block for the clipboard cannot be read");

    // A record holds the pixels of what another program copied, or the block where there are none.
    const auto record = [&] {
        EXPECT_EQ(Record(strSet + "{\"key\":{\"down\":16}}\n"), "");
        return m_strRecord.substr(0, m_strRecord.find("{\"close\""));
    };
    EXPECT_EQ(Play(record() + GET), "");
    EXPECT_THAT(m_strRecord, testing::HasSubstr(R"({"clipboard":{"set":"data:image/png;base64,)"));
    EXPECT_EQ(Bytes(m_codecs.Load(L"b.png")), PIXELS);
    strBlock = "junk";
    const std::string strRecord = record();
    EXPECT_EQ(Play(strRecord + strGet), "");
    EXPECT_EQ(m_files.m_mapFiles[L"b.dib"], "junk");
    EXPECT_THAT(Play(strRecord + GET), testing::HasSubstr("the clipboard's picture cannot be read: "));
}

TEST_F(Clipboard, StrokesArePlayedAndRecordedInTheirOwnForm) {
    const std::string strGet = "{\"clipboard\":{\"getStrokes\":\"b.strk\"}}\n";
    const std::string strSet = "{\"clipboard\":{\"setStrokes\":\"a.strk\"}}\n";
    const auto fill = [&](const std::string& str) { m_files.m_mapFiles[L"a.strk"] = str; };
    fill(*WriteStrokes({{60, 40}, 0, {MakeEvenStroke()}}));
    EXPECT_EQ(Play(strSet + strGet + GET), "") << "a picture too";
    EXPECT_EQ(m_files.m_mapFiles[L"b.strk"], m_files.m_mapFiles[L"a.strk"]);
    EXPECT_EQ(Play(strSet + CLEAR + strGet), "s:3: there are no strokes on the clipboard");
    EXPECT_EQ(Play(R"({"clipboard":{"setStrokes":"none.strk"}})"),
              "s:1: the strokes for the clipboard cannot be read");
    for (const std::string& str : {m_files.m_mapFiles[L"a.strk"], std::string("junk")}) {
        fill(str);
        EXPECT_EQ(Record(strSet + "{\"key\":{\"down\":16}}\n"), "");
        EXPECT_EQ(Play(m_strRecord.substr(0, m_strRecord.find("{\"close\"")) + strGet), "");
        EXPECT_EQ(m_files.m_mapFiles[L"b.strk"], str);
    }
}

} // namespace
