#include "core/RasterKernel/KernelChoice.h"
#include "tests/session/ScriptedSession.h"

TEST(FreehandTools, XAloneSwapsTheColours) {
    for (const auto& [nHeld, nBrush] : {std::pair{VK_Shift, 255}, {VK_Control, 0}, {VK_Alt, 0}}) {
        CScriptedSession session;
        const std::string strKeys = ScriptLine("key", {{"down", nHeld}}) +
                                    ScriptLine("key", {{"down", 'X'}}) + ScriptLine("key", {{"up", nHeld}}) +
                                    ScriptLine("pointer", {{"x", 9}, {"y", 9}});
        EXPECT_EQ(session.Play(SetBrush("BackColor", 255) + Tool(TOOL_BRUSH) + strKeys + LEAVE_UNSAVED), "");
        CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", session.m_files);
        const auto spSection = config.GetSection(L"BrushParam")->GetSection(L"RasterBrush");
        EXPECT_EQ(spSection->GetInt(L"BrushColor", 0), nBrush) << nHeld;
        EXPECT_EQ(spSection->GetInt(L"BackColor", 0), 255 - nBrush) << nHeld;
    }
}

TEST(FreehandTools, AHundredStrokesAreTheSameInEveryFormOfTheKernels) {
    std::string strScript;
    for (int n = 0; n < 100; ++n) {
        constexpr std::pair<int, const char*> TOOLS[]{
            {TOOL_BRUSH, "RasterBrush"}, {TOOL_PENCIL, "RasterPencil"}, {TOOL_ERASER, "RasterEraser"}};
        const auto& [nTool, pszTool] = TOOLS[n % 3];
        const std::pair<const char*, int> aValues[]{
            {"BrushRadius", 1 + n * 7 % 60}, {"BlurLevel", n * 25 % 125}, {"BrushAlpha", 255 - n * 2},
            {"Spray", n % 4 * 20},           {"WaveEnable", n % 2},       {"WaveDistMax", 3}};
        for (const auto& [pszKey, nValue] : aValues) strScript += SetBrush(pszKey, nValue, pszTool);
        strScript += Tool(nTool);
        const int nPoints = 12 + n % 10;
        for (int i = 0; i < nPoints + 4; ++i)
            strScript += PenAt({{(n % 50 + i * 4) * 8, (5 + n) * 8, i < nPoints ? 300 + n * 7 : 0}});
    }
    const auto draw = [](const std::string& str) {
        CScriptedSession session;
        EXPECT_EQ(session.Play(str + LEAVE_UNSAVED), "");
        return session.GetDocument();
    };
    const std::string strVector = draw(strScript);
    UseVectorKernels(false);
    EXPECT_TRUE(draw(strScript) == strVector);
    UseVectorKernels(true);
    EXPECT_FALSE(strVector == draw(""));
}
