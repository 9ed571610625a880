#include "tests/session/ScriptedSession.h"

namespace {

// A hard brush with a radius of 6 pixels at full pressure.
const std::string BRUSH = SetBrush("BrushRadius", 12) + SetBrush("BlurLevel", 100) + Tool(2);
std::string Set(const char* pszKey, int nValue) { return SetBrush(pszKey, nValue) + Tool(2); }

// Positions in eighths of a pixel.
std::string Pen(int x, int nPressure) { return PenAt({{x, 400, nPressure}}); }
std::string Mouse(const char* pszWhat, int x) {
    return ScriptLine("mouse", {{"message", pszWhat}, {"x", x}, {"y", 400}});
}

class Tap : public testing::Test, protected CScriptedSession {
protected:
    // How much ink lies at each pixel of row 50 after a script, and how many strokes the history has.
    void Draw(const std::string& strScript) {
        ASSERT_EQ(Play(BRUSH + strScript + Wait(10) + LEAVE_UNSAVED), "");
        m_nStrokes = m_spCanvas->GetHistory().GetUndoList().size() - 2; // the layers' own steps
        m_vInk.clear();
        for (int32_t x = 0; x < 200; ++x) m_vInk.push_back(InkAt({x, 50}));
    }
    std::pair<int, int> Extent() const {
        const auto inked = [](int n) { return n != 0; };
        return {std::find_if(m_vInk.begin(), m_vInk.end(), inked) - m_vInk.begin(),
                m_vInk.rend() - std::find_if(m_vInk.rbegin(), m_vInk.rend(), inked) - 1};
    }

    std::vector<int> m_vInk;
    size_t m_nStrokes = 0;
};

} // namespace

TEST_F(Tap, AClickOfTheMouseIsADotOfFullSize) {
    for (const int nRelease : {400, 408}) {
        Draw(Mouse("move", 200) + Mouse("move", 395) + Mouse("ldown", 400) + Mouse("lup", nRelease));
        EXPECT_EQ(m_nStrokes, 1u);
        EXPECT_EQ(Extent(), std::pair(43, 56));
        EXPECT_EQ(m_vInk[46], 255);
        for (size_t n = 0; n < 8; ++n) EXPECT_EQ(m_vInk[50 + n], m_vInk[49 - n]) << n;
    }
}

TEST_F(Tap, AMousesLineReachesItsReleaseAtFullSize) {
    Draw(Mouse("ldown", 400) + Mouse("lup", 800));
    EXPECT_EQ(m_nStrokes, 1u);
    EXPECT_GE(Extent().second, 103);
    EXPECT_EQ(m_vInk[97], 255);
    Draw(Mouse("ldown", 400) + Mouse("move", 600) + Mouse("move", 800) + Mouse("lup", 804));
    EXPECT_GE(Extent().second, 105);
}

TEST_F(Tap, APensTapIsOneDotOfItsHighestPressureAtEveryExit) {
    for (const int nExit : {0, 1, 2}) {
        // In place: no event after the lift is waited for. What the contact's events pass the filter for does
        // not matter.
        Draw(Set("StrokeOut", nExit) + Pen(200, 0) + Pen(300, 0) + Pen(400, 300) + Pen(404, 700) +
             Pen(401, 500) + Pen(400, 0));
        EXPECT_EQ(m_nStrokes, 1u) << nExit;
        EXPECT_EQ(Extent(), std::pair(45, 54)) << nExit; // 700 of 1024 of the radius, and the edge
        const std::string strBeside = Pen(400, 700) + Pen(440, 0);
        const std::string strExit = Pen(480, 0) + Pen(520, 0) + Pen(560, 0);
        Draw(Set("StrokeOut", nExit) + strBeside);
        EXPECT_EQ(m_nStrokes, nExit == 0 ? 1u : 0u) << nExit;
        Draw(Set("StrokeOut", nExit) + strBeside + strExit);
        EXPECT_EQ(m_nStrokes, 1u) << nExit;
        EXPECT_EQ(Extent(), std::pair(45, 54)) << nExit;
    }
    for (const char* pszEnd : {"{\"proximity\":\"leave\"}\n", "{\"wait\":300}\n"}) {
        Draw(Pen(400, 700) + Pen(440, 0) + pszEnd);
        EXPECT_EQ(m_nStrokes, 1u) << pszEnd;
        EXPECT_EQ(Extent(), std::pair(45, 54)) << pszEnd;
    }
}

TEST_F(Tap, NeitherWobbleNorSprayMovesADotAndALineLiftedInPlaceEnds) {
    Draw(Set("WaveEnable", 1) + Set("WaveDistMin", 9) + Set("WaveDistMax", 40) + Set("Spray", 80) +
         Mouse("ldown", 400) + Mouse("lup", 400));
    EXPECT_EQ(m_vInk[46], 255);
    for (size_t n = 0; n < 20; ++n) EXPECT_EQ(m_vInk[50 + n], m_vInk[49 - n]) << n;
    Draw(Set("StrokeOut", 2) + Pen(400, 700) + Pen(480, 700) + Pen(560, 700) + Pen(640, 700) + Pen(640, 0));
    EXPECT_EQ(m_nStrokes, 1u);
    EXPECT_GT(Extent().second, 78);
}
