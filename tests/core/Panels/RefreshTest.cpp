#include "tests/support/TestPlatform.h"

namespace {

// Two further panels.
constexpr int LAYERS = 1, HISTORY = 2;

struct CCountingPanel : CPanel {
    using CPanel::CPanel;
    std::wstring GetTitle() const override { return L"数"; }
    void OnRefresh() override { ++m_nRefreshed; }
    void OnControl(TPanelControl&) override {}
    int m_nRefreshed = 0;
};

class Refresh : public testing::Test {
protected:
    static CCountingPanel& Panel(int nId) {
        return dynamic_cast<CCountingPanel&>(*g_pMainFrame->GetPanels().Find(nId));
    }
    static void AddPanel(int nId, EMessage refresh) {
        const auto make = [](const wchar_t* pszSection,
                             const TPanelOutside& outside) -> std::unique_ptr<CPanel> {
            return std::make_unique<CCountingPanel>(pszSection, outside);
        };
        CPanels& panels = g_pMainFrame->GetPanels();
        panels.Add({nId, L"Test", make, refresh, {}});
        panels.Find(nId)->Create(*g_pMainFrame->GetWindow(), {});
    }
    void ExpectTold(const char* pszWhat, const std::function<void()>& fn) {
        m_outside.AddStep([=](CPlayer&) {
            Panel(LAYERS).m_nRefreshed = Panel(HISTORY).m_nRefreshed = 0;
            fn();
        });
        m_outside.AddStep([=](CPlayer&) {
            EXPECT_EQ(Panel(LAYERS).m_nRefreshed > 0, Panel(HISTORY).m_nRefreshed > 0);
            EXPECT_EQ(Panel(LAYERS).m_nRefreshed > 0, *pszWhat != '-') << pszWhat;
        });
    }
    void Play() {
        m_outside.Play([] {
            AddPanel(LAYERS, WM_REFRESH_LAYERS);
            AddPanel(HISTORY, WM_REFRESH_HISTORY);
            CTestPlatform::Open(MakePage({100, 80}));
        });
    }
    static CCanvasBuffer& Canvas() { return *g_wpActiveFrame.lock()->GetCanvas(); }

    CTestPlatform m_outside;
};

} // namespace

TEST_F(Refresh, PanelsHearOfEveryChangeOfTheDocument) {
    const auto command = [&](const char* pszName) {
        ExpectTold(pszName, [pszName] {
            SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, FindCommandId(pszName)});
        });
    };
    ExpectTold("- nothing", [] {});
    command("layer-new-raster");
    ExpectTold("rename", [] { Canvas().GetActiveLayer()->setName(L"線", true); });
    command("layer-merge-down");
    command("edit-undo");
    command("edit-redo");
    command("mode-grey");
    ExpectTold("load", [] { g_pMainFrame->OpenFrame(CreateCanvasFrame(MakePage({50, 40}))); });
    ExpectTold("- view", [] { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_VIEW_FLIP_H}); });
    Play();
}

TEST_F(Refresh, TheCircleOfTheBrushFollowsItsPanel) {
    static constexpr CPoint PT{40, 40};
    const auto reach = [] {
        const auto& window = dynamic_cast<CSessionCanvasWindow&>(*g_wpActiveFrame.lock()->GetWindow());
        const uint8_t uGround = *window.GetGlass().GetPixel({5, 5});
        int32_t n = 0;
        while (n < 100 && *window.GetGlass().GetPixel(PT + CPoint{n, 0}) == uGround) ++n;
        return n;
    };
    m_outside.AddStep([](CPlayer& player) {
        player.GetStage().platform.queue.Post(
            {g_wpActiveFrame.lock()->GetWindow(), EMessage::MouseMove, 0, PackPoint(PT.x, PT.y)});
    });
    m_outside.AddStep([&](CPlayer&) {
        EXPECT_LT(reach(), 19);
        const auto spView = g_wpActiveView.lock();
        EXPECT_EQ(spView->ToClient(spView->ToCanvas(PT)), PT);
        EXPECT_EQ(spView->ToClient({8 * 9, 8 * 7}), g_wpActiveFrame.lock()->GetView().ToWindow({9, 7}));
        CPanel& panel = *g_pMainFrame->GetPanels().Find(ID_PANEL_BRUSH);
        for (const TPanelControl& control : panel.GetControls())
            if (control.strLabel == L"サイズ")
                return SendMessage({panel.GetWindow(), EMessage::PanelChange, control.nId, 40});
    });
    // It goes with the pointer, also while the hand holds the picture, and comes back with it.
    using enum EMessage;
    static const std::vector<EMessage> EVENTS[] = {{KeyDown, MouseLeave}, {MouseMove}, {KeyUp, MouseLeave}};
    for (size_t n = 0; n < std::size(EVENTS); ++n)
        m_outside.AddStep([=](CPlayer& player) {
            EXPECT_NEAR(reach(), n == 1 ? 100 : 20, 1) << n;
            for (const EMessage id : EVENTS[n])
                player.GetStage().platform.queue.Post({g_wpActiveFrame.lock()->GetWindow(), id,
                                                       id == MouseMove ? 0 : VK_Space,
                                                       PackPoint(PT.x, PT.y)});
        });
    m_outside.AddStep([=](CPlayer&) { EXPECT_EQ(reach(), 100); });
    Play();
}
