// The shell's rules, over windows that exist only as state.
#include "core/MainFrame/MainFrame.h"
#include "core/AppModule/AppModule.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Commands/CommandIds.h"
#include "core/IniConfig/IniConfig.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/MainFrame/AboutDialog.h"
#include "core/MainFrame/MenuTable.h"
#include "core/MainFrame/NewDialog.h"
#include "core/MainFrame/SessionScope.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "session/seam/SessionCanvasWindow.h"
#include "session/seam/SessionDialogs.h"
#include "session/seam/SessionMainWindow.h"
#include "session/seam/SessionSnapshots.h"
#include "tests/support/TestPlatform.h"

#include <boost/make_shared.hpp>

#include <new>
#include <set>
#include <utility>

namespace {

class MainFrame : public testing::Test {
protected:
    // A session with one canvas, in which the steps that were added are played.
    void Play() {
        m_outside.Run([&](const TPlatform& platform) {
            CSessionScope scope(platform);
            CreateMainFrame();
            g_pMainFrame->OpenFrame(CreateCanvasFrame(CreateCanvas({300, 200})));
            scope.Run();
        });
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
              +ID_EDIT_REDO, 13105}) // nothing handles the last one
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
        EXPECT_EQ(zoomed(768, ID_ZOOM_IN), 768);
        Active().SetZoom(0);
        EXPECT_EQ(Active().GetView().GetState().uZoom, 768);
    });
    Step([] {
        EXPECT_EQ(g_pMainFrame->GetWindow()->GetZoomItem(), 0);
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_ZOOM_IN));
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_ZOOM_OUT));
        Command(ID_VIEW_ROTATE_LEFT);
        EXPECT_EQ(Active().GetView().GetState().uAngle, 270);
        Command(ID_VIEW_INITIAL);
        EXPECT_EQ(Active().GetView().GetState(), (TViewState{768}));
        g_AppModule.GetPlatform().queue.Post({g_pMainFrame->GetWindow(), EMessage::KeyDown, 0x71}); // F2
    });
    for (const auto& [nDelta, uZoom] : {std::pair{120, 576}, {-120, 768}, {-120, 576}}) {
        Step([=] {
            EXPECT_EQ(Active().GetView().GetState().uZoom, uZoom);
            SendMessage({Active().GetWindow(), EMessage::MouseWheel, nDelta});
        });
    }
    Step([] { EXPECT_EQ(Active().GetView().GetState().uZoom, 480); });
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
        const auto closeMain = [&] {
            SendMessage({g_pMainFrame->GetWindow(), EMessage::Close});
            EXPECT_EQ(g_lstCanvasFrame.size(), 1u) << "nobody was asked";
        };
        SendMessage({Active().GetWindow(), EMessage::Close});
        closeMain();
        // The user is asked at last, and thinks better of it: now it may fail twice again.
        spLayer->m_bFails = false;
        m_pStage->dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::Cancel});
        closeMain();
        spLayer->m_bFails = true;
        closeMain();
        closeMain();
        EXPECT_TRUE(snapshots.GetKept().empty());
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Close});
        EXPECT_TRUE(g_lstCanvasFrame.empty());
    });
    Play();
    EXPECT_EQ(m_outside.m_vShown.size(), 5u);
    EXPECT_EQ(snapshots.GetKept().size(), 1u);
}

TEST_F(MainFrame, TheEndOfTheProcessKeepsWhatIsUnsavedWithoutAQuestion) {
    CSessionSnapshots snapshots;
    m_outside.m_pSnapshots = &snapshots;
    Step([&] {
        const auto endSession = [] { SendMessage({g_pMainFrame->GetWindow(), EMessage::EndSession}); };
        endSession();
        EXPECT_TRUE(snapshots.GetKept().empty()) << "nothing is unsaved";
        for (const int32_t cx : {50, 60}) {
            const auto spCanvas = CreateCanvas({cx, 40});
            spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
            g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
        }
        endSession();
        EXPECT_EQ(snapshots.GetKept().size(), 2u);
        EXPECT_EQ(g_lstCanvasFrame.size(), 3u) << "the session may go on";
    });
    Play();
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

TEST_F(MainFrame, WindowsComeBackWhereTheyWereButOntoAScreen) {
    const auto section = [this](const wchar_t* pszName) {
        CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
        return config.GetSection(L"Windows")->GetSection(pszName);
    };
    section(L"Main")->SetInt(L"Left", 90000);
    section(L"Main")->SetInt(L"Width", 700);
    section(L"Canvas")->SetInt(L"Width", 333);
    CRect rcMain;
    Step([&] {
        rcMain = g_pMainFrame->GetWindow()->GetRect();
        const CRect rcScreen = g_pMainFrame->GetWindow()->GetScreens()[0];
        EXPECT_EQ(rcMain.Intersect(rcScreen), rcMain);
        EXPECT_EQ(rcMain.Width(), 700);
        EXPECT_EQ(Active().GetWindow()->GetRect().Width(), 333);
    });
    Play();
    EXPECT_EQ(section(L"Main")->GetInt(L"Left", -1), rcMain.left);
    EXPECT_EQ(section(L"Canvas")->GetInt(L"Width", -1), 333);
}

TEST(MenuTable, EveryShortcutAndButtonHasItsMenuLine) {
    const std::vector<int> vIds = ListCommands(LoadMenu(200));
    const std::set<int> setIds(vIds.begin(), vIds.end());
    EXPECT_EQ(setIds.size(), vIds.size()); // no command twice
    for (const TAccelerator& accel : GetAccelerators())
        EXPECT_TRUE(setIds.count(accel.nCommand)) << accel.nCommand;
    for (const int nId : LoadToolBar()) EXPECT_TRUE(!nId || setIds.count(nId)) << nId;
    for (const int nId : ListCommands(LoadMenu(100))) EXPECT_TRUE(setIds.count(nId)) << nId;
    EXPECT_EQ(LoadMenu(200)[0].vChildren[0].strText, L"新規作成(&N)\tCtrl+N");
}

TEST_F(MainFrame, DialogsJudgeAndReport) {
    m_outside.Run([&](const TPlatform& platform) {
        CNewDialog dialog(platform.boxes);
        const auto typed = [&](const wchar_t* pszWidth, const wchar_t* pszHeight) {
            dialog.m_vControls[0].strText = pszWidth;
            dialog.m_vControls[1].strText = pszHeight;
            return dialog.OnOk(nullptr);
        };
        EXPECT_TRUE(typed(L"1", L"12000"));
        EXPECT_EQ(dialog.GetSize(), (CSize{1, 12000}));
        EXPECT_FALSE(typed(L"12001", L"30"));
        EXPECT_EQ(dialog.m_vControls[0].strText, L"800"); // put back
        EXPECT_EQ(dialog.m_vControls[1].strText, L"30");  // was good
        EXPECT_FALSE(typed(L"30", L"3x"));
        EXPECT_EQ(dialog.m_vControls[1].strText, L"600");
        CAboutDialog about(platform.modules, platform.clipboard);
        EXPECT_EQ(about.m_vControls[1].strText,
                  L"exe file:\r\n Path: unknown module\r\n Version: not found\r\n"
                  L"WinTab32:\r\n Path: unknown module\r\n Version: not found\r\n");
    });
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
    const std::pair<int, const wchar_t*> aLayers[]{
        {0, L"レイヤーが選択されていません。描くラスタレイヤーを選んでください。"},
        {+ID_LAYER_NEW_VECTOR, L"ベクタレイヤーにはこのツールで描けません。ラスタレイヤーを選んでください。"},
        {+ID_LAYER_NEW_SET, L"レイヤーセットには描けません。中のラスタレイヤーを選んでください。"}};
    for (const auto& [nCommand, pszWhy] : aLayers) {
        Step([nCommand] {
            if (nCommand) Command(nCommand);
        });
        press(EMessage::MouseMove);
        // The text about another layer is cleared, and pointing alone shows none.
        Step([=] { shown(L"", true); });
        press(EMessage::LButtonDown);
        Step([=] { shown(pszWhy, true); });
    }
    Step([] {
        Command(ID_LAYER_NEW_RASTER);
        Active().GetCanvas()->GetActiveLayer()->SetVisible(false);
    });
    press(EMessage::LButtonDown);
    Step([=] {
        shown(L"非表示のレイヤーには描けません。レイヤーを表示してください。", true);
        Active().GetCanvas()->GetActiveLayer()->SetVisible(true);
    });
    press(EMessage::MouseMove);
    Step([=] { shown(L"", false); });
    Play();
}

TEST_F(MainFrame, RecentPathsAreListedWithEveryLetter) {
    Step([] {
        SendMessage({g_pMainFrame->GetWindow(), WM_ADD_RECENT, 0, 0, L"/a && b&c.vlm"});
        SendMessage({g_pMainFrame->GetWindow(), EMessage::InitMenuPopup});
        const auto& window = dynamic_cast<CSessionMainWindow&>(*g_pMainFrame->GetWindow());
        EXPECT_EQ(window.GetRecentFiles(), std::vector<std::wstring>{L"&1 /a &&&& b&&c.vlm"});
    });
    Play();
}
