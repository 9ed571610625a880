#include "core/Commands/Shortcuts.h"
#include "session/seam/SessionManual.h"
#include "tests/support/TestPlatform.h"

namespace {

struct CManualSession : CTestPlatform, testing::Test {
    static void Command() { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_APP_MANUAL}); }
};

TEST_F(CManualSession, TheWindowIsToldWhatWasKeptAndTheKeys) {
    CSessionManual manual;
    m_pManual = &manual;
    AddStep([&](CPlayer&) {
        EXPECT_EQ(manual.GetSetup().look.nZoom, 100);
        EXPECT_NE(manual.GetSetup().fnComplete("<!-- keys --><!-- /keys -->").find("Ctrl+Z"),
                  std::string::npos);
        manual.GetSetup().look = {{700, 500}, 130};
    });
    Play(Command);
    EXPECT_FALSE(manual.IsOpen()) << "it refers to the main frame";
    AddStep([&](CPlayer&) { EXPECT_EQ(manual.GetSetup().look.sz, CSize(700, 500)); });
    AddStep([&](CPlayer&) { EXPECT_EQ(manual.GetSetup().look.nZoom, 130); });
    Play(Command);
}

TEST_F(CManualSession, SaysThatItIsNotInstalled) {
    struct CNoManual : CSessionManual {
        bool Show(IWindow&, const TManualSetup&) override { return false; }
    } manual;
    m_pManual = &manual;
    AddStep([](CPlayer&) {}, EStepKind::Expects);
    Play(Command);
    EXPECT_THAT(m_vShown,
                testing::ElementsAre(testing::HasSubstr(L"マニュアルのファイルが見つかりません。")));
}

} // namespace
