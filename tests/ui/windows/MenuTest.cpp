#include "tests/ui/UiTest.h"

namespace {

QStringList TextsOf(const QWidget& menu) {
    QStringList lstTexts;
    for (const QAction* pAction : menu.actions())
        if (pAction->isVisible()) lstTexts << (pAction->isSeparator() ? "-" : pAction->text());
    return lstTexts;
}

} // namespace

TEST_F(CUiTest, MenusFollowTheActiveChildAndItsStatesThePopup) {
    ICanvasWindow* pCanvas = Open(m_a);
    ASSERT_EQ(TextsOf(*GetWidget().menuBar()), (QStringList{"ファイル(&F)", "編集(&E)", "ウィンドウ(&W)"}));
    const QList<QAction*> vActions = GetMenu(1).actions();
    // The shortcut's column is text; it has no Qt shortcut.
    EXPECT_EQ(vActions[0]->text(), "取り消し(&U)...\tF3, Ctrl+Z");
    EXPECT_TRUE(vActions[0]->shortcut().isEmpty());
    vActions[0]->trigger();
    Turn();
    EXPECT_EQ(m_main.Got(EMessage::Command), (TParams{{57643, 0}}));
    m_main.m_fnHandle = [this](const TMessage& msg) {
        if (msg.id != EMessage::InitMenuPopup) return false;
        m_pMain->GetMenuLook().SetState(57643, false, false);
        m_pMain->GetMenuLook().SetState(12810, true, true);
        m_pMain->GetMenuLook().SetState(4711, true, true); // in no menu
        return true;
    };
    GetMenu(1).popup({});
    EXPECT_TRUE(!vActions[0]->isEnabled() && vActions[1]->isChecked());
    GetMenu(1).close();
    pCanvas->Destroy();
    EXPECT_EQ(TextsOf(*GetWidget().menuBar()), QStringList{"ファイル(&F)"});
}

TEST_F(CUiTest, NewTextsOfCommandsShowInEveryMenuAndToolTip) {
    ICanvasWindow* pFirst = Open(m_a);
    Open(m_b);
    m_pMain->SetCommandTexts({{0, L"編集(&E)", {{57643, L"取り消し(&U)\tF8", {}}}}});
    EXPECT_EQ(GetMenu(1).actions()[0]->text(), "取り消し(&U)\tF8");
    EXPECT_EQ(GetMenu(1).actions()[1]->text(), "上下反転");
    pFirst->Activate();
    Turn();
    EXPECT_EQ(GetMenu(1).actions()[0]->text(), "取り消し(&U)\tF8");
    EXPECT_EQ(GetWidget().findChild<QToolBar*>()->actions()[2]->toolTip(), "取り消し (F8)");
}

TEST_F(CUiTest, ToolBarShowsStatesAndPostsOnlyTheUsersChoice) {
    Open(m_a);
    QAction* pUndo = GetWidget().findChild<QToolBar*>()->actions()[2];
    EXPECT_EQ(pUndo->toolTip(), "取り消し (F3, Ctrl+Z)");
    EXPECT_FALSE(pUndo->icon().isNull());
    m_pMain->GetToolBarLook().SetState(57643, false, true);
    EXPECT_TRUE(!pUndo->isEnabled() && pUndo->isChecked());
    const QSignalSpy spy(pUndo, &QAction::changed);
    m_pMain->GetToolBarLook().SetState(57643, false, true);
    EXPECT_EQ(spy.size(), 0) << "repainted for nothing";

    m_pMain->SetZoomItems({L"1600%", L"等角", L"1/2"});
    m_pMain->SelectZoomItem(99);
    EXPECT_EQ(m_pMain->GetZoomItem(), -1);
    m_pMain->SelectZoomItem(1);
    QTest::keyClick(GetWidget().findChild<QComboBox*>(), Qt::Key_Down);
    Turn();
    EXPECT_EQ(m_main.Got(EMessage::Command), (TParams{{101, 2}}));
}
