#include "tests/ui/UiTest.h"

namespace {

/// The texts of a menu's visible lines, "-" for a separator.
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

TEST_F(CUiTest, RecentFilesAndChildrenAreListedInEveryMenu) {
    m_pMain->SetRecentFiles(57616, {L"&1 /絵.vlm", L"&2 /線.png"});
    Open(m_a, L"A & B");
    ICanvasWindow* pOther = Open(m_b);
    EXPECT_EQ(TextsOf(GetMenu(0)).mid(1), (QStringList{"&1 /絵.vlm", "&2 /線.png"}));
    GetMenu(0).actions()[2]->trigger();
    Turn();
    EXPECT_EQ(m_main.Got(EMessage::Command), (TParams{{57617, 0}}));
    m_pMain->SetRecentFiles(57616, {});
    EXPECT_EQ(TextsOf(GetMenu(0)).mid(1), QStringList{"最近使ったファイル"});
    for (int i = 0; i < 2; ++i) { // a second time lists them once
        GetMenu(2).popup({});
        GetMenu(2).close();
    }
    EXPECT_EQ(TextsOf(GetMenu(2)).mid(1), (QStringList{"-", "&1 A && B", "&2 絵"}));
    EXPECT_TRUE(GetMenu(2).actions()[3]->isChecked());
    m_vLog.clear();
    GetMenu(2).actions()[2]->trigger();
    EXPECT_EQ(m_vLog, (TLog{"b off", "a on"}));
    // The menu that listed them last is deleted with its window.
    pOther->Destroy();
    Turn();
    GetMenu(2).popup({});
    GetMenu(2).close();
    EXPECT_EQ(TextsOf(GetMenu(2)).mid(1), (QStringList{"-", "&1 A && B"}));
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

TEST_F(CUiTest, JapaneseTextsHaveGlyphs) {
    // The families of each font in order: a character that none of them has would be drawn as a box.
    for (const QFont& fontShown : {GetMenu(0).font(), GetWidget().menuBar()->font()}) {
        QString strMissing = "筆圧ー弱中強～拡大率キャンセル";
        for (const QString& strFamily : fontShown.families()) {
            const QRawFont font = QRawFont::fromFont(QFont(strFamily));
            strMissing.removeIf([&](QChar ch) { return font.supportsCharacter(ch); });
        }
        EXPECT_EQ(strMissing, "");
    }
}
