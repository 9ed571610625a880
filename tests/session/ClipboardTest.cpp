// Pictures on the clipboard: scripts copy and paste them, records include them.
#include "session/seam/SessionClipboard.h"
#include "tests/session/ScriptedSession.h"

#include "core/AppModule/AppModule.h"
#include "core/Platform/System.h"

#include <gtest/gtest.h>

#include <array>

namespace {

class Clipboard : public testing::Test, protected CScriptedSession {
protected:
    // A picture of two pixels, B, G, R, A.
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

TEST_F(Clipboard, ATextTakesThePicturesPlaceAndACopyIsItsOwn) {
    CSessionClipboard clipboard;
    const auto spPicture = MakePicture(PIXELS);
    EXPECT_TRUE(clipboard.SetPicture(*spPicture));
    TLockedBits bits;
    ASSERT_TRUE(spPicture->LockBits({0, 0, 2, 1}, ELockMode::Write, bits));
    bits.pData[0] = 99;
    spPicture->UnlockBits();
    EXPECT_EQ(Bytes(clipboard.GetPicture()), PIXELS);
    clipboard.SetText(L"文");
    EXPECT_FALSE(clipboard.HasPicture());
    EXPECT_FALSE(clipboard.GetPicture());
}

TEST_F(Clipboard, ARecordHoldsAnotherProgramsPictureBeforeTheKeyThatMayPasteIt) {
    ASSERT_TRUE(m_codecs.Save(L"a.png", *MakePicture(PIXELS)));
    const std::string strDown = "{\"key\":{\"down\":86}}\n", strUp = "{\"key\":{\"up\":86}}\n";
    TScript script = ParseScript(SET + strDown + CLEAR + strUp + SET + strDown + strUp + strDown, "s");
    const auto own = [](auto fnDo) {
        return TStep{1, [=](CPlayer&) { fnDo(g_AppModule.GetPlatform().clipboard); }};
    };
    const auto ask = own([](IClipboard& clipboard) { EXPECT_TRUE(clipboard.HasPicture()); });
    const auto copy = own([this](IClipboard& clipboard) { clipboard.SetPicture(*MakePicture(PIXELS)); });
    const auto text = own([](IClipboard& clipboard) { clipboard.SetText(L"文"); });
    // The menu queries the clipboard when idle; a player also copies what the application itself copied.
    script.vSteps.insert(script.vSteps.begin() + 5, {ask, ask});
    script.vSteps.insert(script.vSteps.end() - 2, copy);
    script.vSteps.insert(script.vSteps.end() - 1, text);
    CSessionPlatform session(m_parts, script);
    std::string strVerbs, strPicture;
    CRecorder recorder(session.GetPlatform(), [&](std::string_view strLine) {
        if (strLine.starts_with("{\"clipboard\"") && strPicture.empty()) strPicture = strLine;
        for (const std::string_view strVerb : {"set", "clear", "down", "up"})
            if (strLine.find("\":{\"" + std::string(strVerb)) != strLine.npos)
                strVerbs += ' ' + std::string(strVerb);
        return true;
    });
    PlayOn(recorder.GetPlatform(), true);
    EXPECT_EQ(session.GetFailure(), "");
    EXPECT_EQ(strVerbs, " set down clear up set down up down");
    EXPECT_EQ(Play(strPicture + GET), "");
    EXPECT_EQ(Bytes(m_codecs.Load(L"b.png")), PIXELS);
}

} // namespace
