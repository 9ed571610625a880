// The shell's rules, over windows that exist only as state.
#include "core/MainFrame/MainFrame.h"
#include "core/AppModule/AppModule.h"
#include "core/AppModule/CommandIds.h"
#include "core/AppModule/MessageQueue.h"
#include "core/IniConfig/IniConfig.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/MainFrame/AboutDialog.h"
#include "core/MainFrame/MenuTable.h"
#include "core/MainFrame/NewDialog.h"
#include "core/MainFrame/SessionScope.h"
#include "session/SessionDialogs.h"
#include "tests/support/TestPlatform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

class MainFrame : public testing::Test {
protected:
    // A session with one canvas of the given size; the steps that were added are played in it.
    void Play(CSize szCanvas = {300, 200}) {
        m_outside.Run([&](const TPlatform& platform) {
            CSessionScope scope(platform);
            CreateMainFrame();
            Open(CreateCanvas(szCanvas));
            scope.Run();
        });
    }
    static boost::shared_ptr<CCanvasFrame> Open(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
        const auto spFrame = CreateCanvasFrame(spCanvas);
        g_pMainFrame->OpenFrame(spFrame);
        return spFrame;
    }
    static void Command(int nId) { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, nId}); }
    static void Key(int nKey) {
        g_AppModule.GetPlatform().queue.Post({g_pMainFrame->GetWindow(), EMessage::KeyDown, nKey});
    }
    static CCanvasFrame& Active() { return *g_wpActiveFrame.lock(); }
    void Step(const std::function<void()>& fn) {
        m_outside.AddStep([fn](CPlayer&) { fn(); });
    }

    CTestPlatform m_outside;
};

} // namespace

TEST_F(MainFrame, CommandStatesFollowTheViewAndTheHost) {
    Step([] {
        for (const int nId : {ID_FILE_NEW, ID_FILE_OPEN, ID_FILE_SAVE, ID_FILE_SAVE_AS})
            EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(nId));
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(13105)); // nothing handles it
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_UNDO));
        EXPECT_FALSE(g_pMainFrame->IsCommandChecked(ID_VIEW_FLIP_H));
        EXPECT_TRUE(g_pMainFrame->IsCommandChecked(ID_PREDICTION_FIRST + 1));
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_FILE_MRU_FIRST));
        Active().GetCanvas()->GetRoot().AddLayer(CreateRasterLayer(Active().GetCanvas()), -1);
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_UNDO));
        Command(ID_EDIT_UNDO);
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO));
        Active().GetCanvas()->GetHistory().SetModified(false);
        Command(ID_VIEW_FLIP_H);
        EXPECT_TRUE(g_pMainFrame->IsCommandChecked(ID_VIEW_FLIP_H));
    });
    Play();
}

TEST_F(MainFrame, ZoomingStepsThroughTheListAndStopsAtItsEnds) {
    Step([] {
        EXPECT_EQ(Active().GetView().GetState().uZoom, 48);
        Command(ID_ZOOM_IN);
        EXPECT_EQ(Active().GetView().GetState().uZoom, 96);
        Active().SetZoom(40); // between 100% and 2/3
        Command(ID_ZOOM_IN);
        EXPECT_EQ(Active().GetView().GetState().uZoom, 48);
        Active().SetZoom(40);
        Command(ID_ZOOM_OUT);
        EXPECT_EQ(Active().GetView().GetState().uZoom, 32);
        for (int n = 0; n < 30; ++n) Command(ID_ZOOM_IN);
        EXPECT_EQ(Active().GetView().GetState().uZoom, 768);
        Active().SetZoom(0);
        EXPECT_EQ(Active().GetView().GetState().uZoom, 768);
    });
    Step([] {
        EXPECT_EQ(g_pMainFrame->GetWindow()->GetZoomItem(), 0);
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_ZOOM_IN));
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_ZOOM_OUT));
        for (int n = 0; n < 4; ++n) Command(ID_VIEW_ROTATE_RIGHT);
        Command(ID_VIEW_ROTATE_LEFT);
        EXPECT_EQ(Active().GetView().GetState().uAngle, 270);
        Command(ID_VIEW_INITIAL);
        EXPECT_EQ(Active().GetView().GetState(), (TViewState{768}));
        Key(0x71); // F2
    });
    Step([] { EXPECT_EQ(Active().GetView().GetState().uZoom, 576); });
    Play();
}

TEST_F(MainFrame, TwoViewsOfOneCanvasAndAStrokeOfChange) {
    Step([] {
        Command(ID_VIEW_NEW);
        ASSERT_EQ(g_lstCanvasFrame.size(), 2u);
        EXPECT_EQ(&Active(), g_lstCanvasFrame.back().get());
        EXPECT_EQ(Active().GetCanvas(), g_lstCanvasFrame.front()->GetCanvas());
        Command(ID_VIEW_ROTATE_RIGHT);
        EXPECT_EQ(g_lstCanvasFrame.front()->GetView().GetState().uAngle, 0);
        // The first of two views closes without a word, though the canvas is changed.
        Active().GetCanvas()->GetHistory().SetModified(true);
        Command(ID_FILE_CLOSE);
    });
    Step([] {
        ASSERT_EQ(g_lstCanvasFrame.size(), 1u);
        EXPECT_EQ(&Active(), g_lstCanvasFrame.front().get());
        Active().GetCanvas()->GetHistory().SetModified(false);
        Command(ID_FILE_CLOSE); // the last one ends a host's session
    });
    Play();
    EXPECT_TRUE(m_outside.m_vShown.empty());
}

TEST_F(MainFrame, WindowsComeBackWhereTheyWereButOntoAScreen) {
    const auto section = [this](const wchar_t* pszName) {
        return CIniConfig(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files)
            .GetSection(L"Windows")
            ->GetSection(pszName);
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

TEST_F(MainFrame, FilesThatFailAreToldAndLeaveNoFrame) {
    m_outside.m_files.m_mapFiles[L"bad.vlm"] = "garbage";
    Step([] {
        EXPECT_FALSE(g_pMainFrame->OpenFile(L"bad.vlm"));
        EXPECT_FALSE(g_pMainFrame->OpenFile(L"none.vlm"));
        EXPECT_FALSE(g_pMainFrame->OpenFile(L"none.png"));
        EXPECT_EQ(g_lstCanvasFrame.size(), 1u);
    });
    Play();
    EXPECT_EQ(m_outside.m_vShown,
              (std::vector<std::wstring>{L"データファイルが破損しています。",
                                         L"ファイルを開けませんでした。\nFile: 'none.vlm'",
                                         L"画像ファイルを開けませんでした。\nFile: 'none.png'"}));
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
            dialog.m_vFields[0].strText = pszWidth;
            dialog.m_vFields[1].strText = pszHeight;
            return dialog.OnOk(nullptr);
        };
        EXPECT_TRUE(typed(L"1", L"12000"));
        EXPECT_EQ(dialog.GetSize(), (CSize{1, 12000}));
        EXPECT_FALSE(typed(L"12001", L"30"));
        EXPECT_EQ(dialog.m_vFields[0].strText, L"800"); // put back
        EXPECT_EQ(dialog.m_vFields[1].strText, L"30");  // was good
        EXPECT_FALSE(typed(L"30", L"3x"));
        EXPECT_EQ(dialog.m_vFields[1].strText, L"600");
        CAboutDialog about(platform.modules, platform.clipboard);
        EXPECT_EQ(about.m_vFields[1].strText,
                  L"exe file:\r\n Path: unknown module\r\n Version: not found\r\n"
                  L"WinTab32:\r\n Path: unknown module\r\n Version: not found\r\n");
    });
}
