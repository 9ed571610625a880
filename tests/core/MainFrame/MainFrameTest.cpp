#include "core/Commands/MenuTable.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "session/seam/SessionKeys.h"
#include "session/seam/SessionSnapshots.h"
#include "tests/support/TestPlatform.h"

namespace {

constexpr wchar_t IDLE_HINT[] =
    L"ドラッグ: 描く　Alt・I: 色を拾う　X: 色の入れ替え　スペース・H: 画面を動かす　"
    L"Ctrl+ホイール: 拡大・縮小";

class MainFrame : public testing::Test {
protected:
    void Play() {
        m_outside.Play([] { CTestPlatform::Open(CreateCanvas({300, 200})); });
    }
    static void Command(int nId) { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, nId}); }
    static CCanvasFrame& Active() { return *g_wpActiveFrame.lock(); }
    void Step(const std::function<void()>& fn) {
        m_outside.AddStep([this, fn](CPlayer& player) { m_pStage = &player.GetStage(), fn(); });
    }

    const TStage* m_pStage = nullptr; ///< of the step that is being played
    CTestPlatform m_outside;
};

} // namespace

TEST_F(MainFrame, ZoomingStepsThroughTheListAndCommandsWithoutEffectAreDisabled) {
    Step([] {
        for (const int nId :
             {+ID_FILE_NEW, +ID_FILE_OPEN, +ID_FILE_SAVE, +ID_FILE_SAVE_AS, +ID_FILE_MRU_FIRST, +ID_EDIT_UNDO,
              +ID_EDIT_REDO, 99}) // nothing handles the last one
            EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(nId)) << nId;
        EXPECT_TRUE(g_pMainFrame->IsCommandChecked(ID_PREDICTION_FIRST + 1));
    });
    const auto zoomed = [](int nFrom, int nCommand) {
        Active().SetZoom(nFrom);
        Command(nCommand);
        return Active().GetView().GetState().uZoom;
    };
    Step([&] {
        EXPECT_EQ(zoomed(48, ID_ZOOM_IN), 96);
        EXPECT_EQ(zoomed(40, ID_ZOOM_IN), 48); // between 100% and 2/3
        EXPECT_EQ(zoomed(40, ID_ZOOM_OUT), 32);
        Command(ID_VIEW_ROTATE_LEFT);
        EXPECT_EQ(Active().GetView().GetState().uAngle, 270);
        EXPECT_EQ(zoomed(768, ID_ZOOM_IN), 768);
        Command(ID_VIEW_INITIAL);
        EXPECT_EQ(Active().GetView().GetState(), (TViewState{768}));
        SendMessage({Active().GetWindow(), EMessage::MouseWheel, -120});
    });
    Step([] {
        EXPECT_EQ(Active().GetView().GetState().uZoom, 576);
        SendMessage({Active().GetWindow(), EMessage::MouseWheel, 120});
    });
    Step([] {
        EXPECT_EQ(g_pMainFrame->GetWindow()->GetZoomItem(), 0);
        EXPECT_TRUE(!g_pMainFrame->IsCommandEnabled(ID_ZOOM_IN) &&
                    g_pMainFrame->IsCommandEnabled(ID_ZOOM_OUT));
        // The box's last line: 300x200 fits 1000x700 three times, in the middle.
        Active().ScrollTo({0, 0});
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, IDC_ZOOM_COMBO, 19});
        EXPECT_EQ(Active().GetView().GetState().uZoom, 144);
        EXPECT_EQ(Active().GetView().ToWindow(CPoint{150, 100}), (CPoint{500, 350}));
        Command(ID_THEME_LAST);
        EXPECT_TRUE(g_pMainFrame->IsCommandChecked(ID_THEME_LAST));
    });
    Step([] { EXPECT_EQ(g_pMainFrame->GetWindow()->GetZoomItem(), 8); });
    Play();
    Step([] {
        EXPECT_EQ(dynamic_cast<CSessionMainWindow&>(*g_pMainFrame->GetWindow()).GetTheme(), ETheme::Dark);
    });
    Play();
}

TEST_F(MainFrame, AWindowWhoseClosingFailsStays) {
    // Memory runs out when the work that is left is looked at.
    struct CFailingLayer : CRasterLayerBuffer {
        uint64_t GetNextStroke() const override {
            if (m_bFails) throw std::bad_alloc();
            return NO_STROKE;
        }
        bool m_bFails = true;
    };
    CSessionSnapshots snapshots;
    m_outside.m_pSnapshots = &snapshots;
    Step([&] {
        const auto spLayer = boost::make_shared<CFailingLayer>();
        spLayer->Create(Active().GetCanvas());
        Active().GetCanvas()->GetRoot().AddLayer(spLayer, -1);
        const auto closeMain = [&](bool bFails) {
            spLayer->m_bFails = bFails;
            SendMessage({g_pMainFrame->GetWindow(), EMessage::Close});
            EXPECT_EQ(g_lstCanvasFrame.size(), 1u) << "nobody was asked";
        };
        SendMessage({Active().GetWindow(), EMessage::Close});
        closeMain(true);
        // The user is asked at last, and thinks better of it: now it may fail twice again.
        m_pStage->dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::Cancel});
        for (const bool bFails : {false, true, true}) closeMain(bFails);
        EXPECT_TRUE(snapshots.GetKept().empty());
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Close});
        EXPECT_TRUE(g_lstCanvasFrame.empty());
    });
    Play();
    EXPECT_EQ(m_outside.m_vShown.size(), 5u);
    EXPECT_EQ(snapshots.GetKept().size(), 1u);
}

TEST_F(MainFrame, AStrokeThatIsNotRenderedYetIsAStepToUndo) {
    Step([] {
        const auto spCanvas = Active().GetCanvas();
        const auto spLayer = CreateRasterLayer(spCanvas);
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        const auto draw = [&](int32_t y = 80) {
            CStrokeRandom random;
            const auto spStroke = boost::make_shared<CRasterBrushStroke>(TStrokeSetup{
                spCanvas->GetSize(), 0, false, true, L"線", {}, g_AppModule.GetPlatform().clock, random});
            for (const int x : {80, 400, 800}) spStroke->AddCtlPoint({x, y}, 1024, 90);
            spStroke->AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
            spLayer->SetStroke(spStroke);
            spLayer->QueueStroke();
        };
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_UNDO));
        draw();
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_UNDO));
        Command(ID_EDIT_UNDO);
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_UNDO));
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO));
        draw(-9000); // beside the canvas: it leaves nothing
        g_AppModule.GetMessageLoop()->PreTranslateMessage({nullptr, EMessage::KeyDown, 0x73}); // F4
        EXPECT_FALSE(spCanvas->GetHistory().CanRedo()) << "as it would have been, rendered in time";
        Command(ID_EDIT_UNDO);
        draw();
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO)) << "it ends what could be redone";
    });
    Play();
}

TEST(MenuTable, EveryShortcutAndButtonHasItsMenuLine) {
    const std::vector<int> vIds = ListCommands(LoadMenu(200));
    const std::set<int> setIds(vIds.begin(), vIds.end());
    EXPECT_EQ(setIds.size(), vIds.size()); // no command twice
    for (const int nId : LoadToolBar()) EXPECT_TRUE(!nId || setIds.count(nId)) << nId;
    for (const int nId : ListCommands(LoadMenu(100))) EXPECT_TRUE(setIds.count(nId)) << nId;
    EXPECT_EQ(LoadMenu(200)[0].vChildren[0].strText, L"新規作成(&N)\tCtrl+N");
}

TEST_F(MainFrame, APressThatCannotDrawSaysWhyOnTheStatusLineAndByTheCursor) {
    const auto shown = [](const wchar_t* pszWhy, bool bForbidden) {
        const auto& main = dynamic_cast<CSessionMainWindow&>(*g_pMainFrame->GetWindow());
        const auto& window = dynamic_cast<CSessionCanvasWindow&>(*Active().GetWindow());
        EXPECT_EQ(main.GetStatusText(0), pszWhy);
        EXPECT_EQ(window.GetCursor(), bForbidden ? ECursor::Forbidden : ECursor::Cross);
    };
    const auto press = [&](EMessage id) {
        Step([id] { g_AppModule.GetPlatform().queue.Post({Active().GetWindow(), id, MOUSE_LEFT}); });
    };
    for (const auto& [nCommand, pszWhy] :
         {std::pair{0, L"レイヤーが選択されていません。描くラスタレイヤーを選んでください。"},
          {+ID_LAYER_NEW_SET, L"レイヤーセットには描けません。中のラスタレイヤーを選んでください。"}}) {
        Step([nCommand] {
            if (nCommand) Command(nCommand);
        });
        press(EMessage::MouseMove);
        // The text about another layer is cleared, and pointing alone shows none.
        Step([=] { shown(L"", true); });
        press(EMessage::LButtonDown);
        Step([=] { shown(pszWhy, true); });
    }
    Step([] { Command(ID_LAYER_NEW_RASTER); });
    press(EMessage::MouseMove);
    Step([=] { shown(IDLE_HINT, false); });
    Play();
}

TEST_F(MainFrame, TheStatusLineTellsWhatKeysDoAndWhereThePointerIs) {
    const auto expect = [this](const wchar_t* pszHint, const wchar_t* pszPosition) {
        Step([=] {
            const auto& main = dynamic_cast<CSessionMainWindow&>(*g_pMainFrame->GetWindow());
            EXPECT_EQ(main.GetStatusText(0), pszHint);
            EXPECT_EQ(main.GetStatusText(2), pszPosition);
        });
    };
    // Lets time pass and the window's timers, as a move alone is followed by no idle work.
    const auto pass = [this](uint32_t uMs) {
        m_pStage->clock.Advance(uMs);
        m_pStage->platform.queue.Post({Active().GetWindow(), EMessage::Timer});
    };
    const auto point = [this, pass](EMessage id, CPoint ptCanvas, int nKeys = 0, uint32_t uMs = 50) {
        Step([=, this] {
            const CPoint pt = Active().GetView().ToWindow8(ptCanvas);
            m_pStage->platform.queue.Post({Active().GetWindow(), id, nKeys, PackPoint(pt.x, pt.y)});
            pass(uMs);
        });
    };
    const wchar_t* const pszIdle = IDLE_HINT;
    Step([] { Command(ID_LAYER_NEW_RASTER); });
    expect(pszIdle, L"");
    point(EMessage::MouseMove, {299 * 8, 0});
    expect(pszIdle, L"299, 0");
    point(EMessage::MouseMove, {80, 80}, 0, 49);
    expect(pszIdle, L"299, 0"); // not yet
    Step([=] { pass(1); });
    expect(pszIdle, L"10, 10");
    point(EMessage::MouseMove, {300 * 8, 0});
    expect(pszIdle, L""); // beside the canvas
    const std::pair<int, const wchar_t*> aHints[] = {{VK_Alt, L"クリック: 色を拾う"},
                                                     {'I', L"クリック: 色を拾う"},
                                                     {VK_Control, L"ホイール: 拡大・縮小"},
                                                     {VK_Space, L"ドラッグ: 画面を動かす"},
                                                     {VK_Shift, pszIdle}};
    for (const auto& [nKey, pszHint] : aHints)
        for (const bool bDown : {true, false}) {
            Step([=, this, n = nKey] {
                m_pStage->keys.Press(n, bDown);
                m_pStage->platform.queue.Post(
                    {Active().GetWindow(), bDown ? EMessage::KeyDown : EMessage::KeyUp, n});
            });
            expect(bDown ? pszHint : pszIdle, L"");
        }
    point(EMessage::LButtonDown, {80, 88}, MOUSE_LEFT);
    expect(L"右クリック・Esc: やめる", L"10, 11");
    point(EMessage::LButtonUp, {80, 88});
    point(EMessage::MouseLeave, {});
    expect(pszIdle, L"");
    Step([this] { m_pStage->dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::No}); });
    Play();
}
