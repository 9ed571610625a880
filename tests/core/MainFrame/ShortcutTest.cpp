// Sets of shortcuts, and what the built-in one does in a session.
#include "core/Base/Failure.h"
#include "core/Base/Resource.h"
#include "core/Commands/CommandIds.h"
#include "core/Commands/MenuTable.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/System.h"
#include "core/RasterBrush/FreehandTools.h"
#include "session/seam/SessionKeys.h"
#include "tests/support/PanelSession.h"

namespace {

class Shortcuts : public CPanelSession {
protected:
    void Press(int nKey, const std::vector<int>& vHeld = {}) {
        for (const int nHeld : vHeld) m_pStage->keys.Press(nHeld, true);
        EXPECT_TRUE(g_pMainFrame->PreTranslateMessage({g_pMainFrame->GetWindow(), EMessage::KeyDown, nKey}))
            << nKey;
        for (const int nHeld : vHeld) m_pStage->keys.Press(nHeld, false);
    }
};

} // namespace

TEST_F(Shortcuts, EveryLineOfTheBuiltInSetIsAKeyOfACommand) {
    std::string strLines(FindResource("accelerators.tsv"));
    while (strLines[0] == '#') strLines.erase(0, strLines.find('\n') + 1);
    EXPECT_EQ(CShortcuts::GetDefault().Format(), strLines);
}

TEST_F(Shortcuts, ASetIsReadWrittenAndChanged) {
    CShortcuts set = CShortcuts::Parse("# mine\nCS\t5A\tedit-redo\n-\t70\tzoom-in\nN\t24\tno-such\n");
    EXPECT_EQ(set.Format(), "CS\t5A\tedit-redo\n-\t70\tzoom-in\n");
    EXPECT_EQ(NameOfKey(set.GetKeys(ID_EDIT_REDO).front()), L"Ctrl+Shift+Z");
    EXPECT_EQ(NameOfKey({0xDB, false, false, true}) + NameOfKey({0x70}), L"Alt+[F1");
    set.Add({0x70}, ID_ZOOM_OUT); // zoom-in loses the key
    EXPECT_TRUE(set.GetKeys(ID_ZOOM_IN).empty());
    EXPECT_EQ(set.FindCommand(TKey{0x70}), ID_ZOOM_OUT);
    for (const char* pszBad : {"", "# only\n", "C\t5A\n", "X\t5A\tedit-undo\n", "C\tZZ\tedit-undo\n",
                               "C\t11\tedit-undo\n", "C\t100\tedit-undo\n"})
        EXPECT_THROW(CShortcuts::Parse(pszBad), deserialize_error) << pszBad;
    CIniConfig config(L"/keys.ini", m_outside.m_files);
    set.Write(config);
    EXPECT_TRUE(CShortcuts::Read(config) == set);
    config.GetSection(L"Shortcuts")->SetString(L"1", L"damaged");
    EXPECT_TRUE(CShortcuts::Read(config) == CShortcuts::GetDefault());
    std::vector<TMenuItem> vMenu = LoadMenu(MENU_CANVAS);
    CShortcuts::GetDefault().Label(vMenu);
    EXPECT_EQ(vMenu[1].vChildren[1].strText, L"やり直し(&R)\tF4, Ctrl+Y") << "as it is given";
    EXPECT_EQ(vMenu[0].vChildren[3].strText, L"閉じる(&C)\tCtrl+W");
    set.Label(vMenu);
    EXPECT_EQ(vMenu[1].vChildren[1].strText, L"やり直し(&R)\tCtrl+Shift+Z");
    EXPECT_EQ(vMenu[1].vChildren[0].strText, L"取り消し(&U)");
}

TEST_F(Shortcuts, KeysPickToolsSizesAndViews) {
    const auto size = [] {
        return dynamic_cast<CRasterBrushBase&>(*g_wpActiveTool.lock()).GetParam().BrushRadius;
    };
    const auto zoom = [] { return Active().GetView().GetState().uZoom; };
    Play({[&] {
        Press('P');
        EXPECT_EQ(g_wpActiveTool.lock()->GetToolId(), TOOL_PENCIL);
        Press('B');
        EXPECT_EQ(g_wpActiveTool.lock()->GetToolId(), TOOL_BRUSH);
        dynamic_cast<CRasterBrushBase&>(*g_wpActiveTool.lock()).GetParam().BrushRadius = 80;
        Press(0xDD);
        EXPECT_EQ(size(), 90u);
        Press(0xDB);
        EXPECT_EQ(size(), 79u);
        Press(0xBB, {VK_Control});
        EXPECT_EQ(zoom(), 96);
        Press(0xBD, {VK_Control});
        EXPECT_EQ(zoom(), 48);
        Press('0', {VK_Control}); // the canvas has 100 by 80
        EXPECT_EQ(zoom(), 384);
        const CSize szClient = Active().GetWindow()->GetClientSize();
        EXPECT_TRUE(szClient.cx >= 800 && szClient.cy >= 640 && szClient.cy < 800)
            << "fits, and no larger one";
        const CPoint ptMiddle = Active().GetView().ToCanvas({szClient.cx / 2, szClient.cy / 2});
        EXPECT_EQ(ptMiddle, (CPoint{50, 40}));
        Press(0x7A);
        EXPECT_FALSE(g_pMainFrame->GetPanels().IsShown(ID_PANEL_BRUSH));
        Press(0x7A);
        EXPECT_TRUE(g_pMainFrame->GetPanels().IsShown(ID_PANEL_BRUSH));
        EXPECT_FALSE(
            g_pMainFrame->PreTranslateMessage({g_pMainFrame->GetWindow(), EMessage::KeyDown, 0x7A, 1}));
        Press(0x7A); // and so they are again at the next start
    }});
    CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
    EXPECT_EQ(config.GetSection(L"Windows")->GetSection(L"Brush")->GetInt(L"IsShow", 1), 1);
}

TEST_F(Shortcuts, TheWheelZoomsAboutThePointerAndTheMiddleButtonMovesTheView) {
    static constexpr CPoint PT{200, 150};
    const auto send = [](EMessage id, CPoint pt) {
        SendMessage({Active().GetWindow(), id, 0, PackPoint(pt.x, pt.y)});
    };
    Play({[&] {
        Active().SetZoom(384);
        send(EMessage::MouseMove, PT);
        const CPoint ptCanvas = Active().GetView().ToCanvas(PT);
        m_pStage->keys.Press(VK_Control, true);
        SendMessage({Active().GetWindow(), EMessage::MouseWheel, 120});
        m_pStage->keys.Press(VK_Control, false);
        EXPECT_EQ(Active().GetView().GetState().uZoom, 480);
        EXPECT_EQ(Active().GetView().ToCanvas(PT), ptCanvas);
        SendMessage({Active().GetWindow(), EMessage::Pinch, 1, PackPoint(PT.x, PT.y)});
        EXPECT_EQ(Active().GetView().GetState().uZoom, 576);
        EXPECT_EQ(Active().GetView().ToCanvas(PT), ptCanvas);
        const CPoint ptScroll = Active().GetView().GetScroll();
        send(EMessage::MButtonDown, PT);
        send(EMessage::MouseMove, PT - CPoint{20, 30});
        send(EMessage::LButtonUp, PT - CPoint{20, 30}); // another button's
        send(EMessage::MouseMove, PT - CPoint{25, 30});
        send(EMessage::MButtonUp, PT - CPoint{25, 30});
        send(EMessage::MouseMove, PT);
        EXPECT_EQ(Active().GetView().GetScroll(), ptScroll + (CPoint{25, 30}));
        EXPECT_FALSE(Canvas().GetHistory().CanUndo()) << "nothing is drawn";
    }});
}

TEST_F(Shortcuts, AKeyBesideAltPicksAndOneBesideSpaceMovesTheView) {
    const auto hold = [&](int nKey, bool bDown) {
        m_pStage->keys.Press(nKey, bDown);
        SendMessage({Active().GetWindow(), bDown ? EMessage::KeyDown : EMessage::KeyUp, nKey});
    };
    const auto drag = [&](CPoint ptTo) {
        for (const auto& [id, pt] : {std::pair(EMessage::LButtonDown, CPoint{200, 150}),
                                     {EMessage::MouseMove, ptTo},
                                     {EMessage::LButtonUp, ptTo}})
            SendMessage({Active().GetWindow(), id, MOUSE_LEFT, PackPoint(pt.x, pt.y)});
    };
    Play({[&] {
        auto& tool = dynamic_cast<CRasterBrushBase&>(*g_wpActiveTool.lock());
        Active().SetZoom(384);
        tool.GetFreehand().m_clrBrush = 0x123456;
        drag({210, 150});
        const size_t nStrokes = Canvas().GetHistory().GetUndoList().size();
        tool.GetFreehand().m_clrBrush = 0;
        hold('I', true);
        drag({200, 150});
        EXPECT_EQ(tool.GetFreehand().m_clrBrush, 0x123456u);
        hold('I', false);
        const CPoint ptScroll = Active().GetView().GetScroll();
        hold('H', true);
        drag({180, 140});
        EXPECT_EQ(Active().GetView().GetScroll().y, ptScroll.y + 10);
        hold('H', false);
        EXPECT_EQ(Canvas().GetHistory().GetUndoList().size(), nStrokes) << "nothing was drawn";
        m_pStage->keys.Press(VK_Control, true);
        hold('I', true); // another shortcut
        drag({260, 150});
        EXPECT_EQ(Canvas().GetHistory().GetUndoList().size(), nStrokes + 1);
        m_pStage->keys.Press(VK_Control, false);
        hold('I', false);
    }});
}
