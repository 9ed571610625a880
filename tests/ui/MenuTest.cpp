#include "UiTest.h"

#include "ui/QtMenu.h"

#include <QComboBox>
#include <QDropEvent>
#include <QMimeData>
#include <QRawFont>
#include <QSignalSpy>
#include <QToolBar>
#include <QUrl>

TEST_F(CUiTest, MenusFollowTheActiveChildAndPostCommands) {
    EXPECT_EQ(GetWidget().menuBar()->actions().size(), 1);
    CTestClient& canvas = MakeClient("canvas");
    ICanvasWindow* pCanvas = MakeCanvas(canvas, L"絵");
    ASSERT_EQ(GetWidget().menuBar()->actions().size(), 3);
    // The text as given: the part behind the tab is the shortcut's column, and no Qt shortcut stands behind
    // it.
    QAction* pUndo = GetMenu(1).actions().front();
    EXPECT_EQ(pUndo->text(), QString::fromWCharArray(L"取り消し(&U)...\tF3, Ctrl+Z"));
    EXPECT_TRUE(pUndo->shortcut().isEmpty());

    pUndo->trigger();
    Turn();
    ASSERT_EQ(m_main.Got(EMessage::Command).size(), 1u);
    EXPECT_EQ(m_main.Got(EMessage::Command)[0].wParam, 57643);

    pCanvas->Destroy();
    EXPECT_EQ(GetWidget().menuBar()->actions().size(), 1);
}

TEST_F(CUiTest, PopupBringsStatesUpToDateBeforeItShows) {
    CTestClient& canvas = MakeClient("canvas");
    MakeCanvas(canvas, L"絵");
    m_main.m_fnHandle = [this](const TMessage& msg) {
        if (msg.id != EMessage::InitMenuPopup) return false;
        m_pMain->GetMenuLook().SetState(57643, false, false);
        m_pMain->GetMenuLook().SetState(12810, true, true);
        m_pMain->GetMenuLook().SetState(4711, true, true);
        return true;
    };
    GetMenu(1).popup({});
    EXPECT_FALSE(GetMenu(1).actions()[0]->isEnabled());
    EXPECT_TRUE(GetMenu(1).actions()[2]->isChecked());
    GetMenu(1).close();
}

TEST_F(CUiTest, RecentFilesStandInTheirPlaceInEveryMenu) {
    m_pMain->SetRecentFiles(57616, {L"&1 /絵.vlm", L"&2 /線.png"});
    CTestClient& canvas = MakeClient("canvas");
    MakeCanvas(canvas, L"絵");
    EXPECT_EQ(TextsOf(GetMenu(0)).mid(1), (QStringList{"&1 /絵.vlm", "&2 /線.png"}));
    GetMenu(0).actions()[2]->trigger();
    Turn();
    EXPECT_EQ(m_main.m_vMessages.back().wParam, 57617);
    m_pMain->SetRecentFiles(57616, {});
    EXPECT_EQ(TextsOf(GetMenu(0)).mid(1), QStringList{"最近使ったファイル"});
}

TEST_F(CUiTest, WindowMenuListsTheChildrenAndChoosesOne) {
    CTestClient& first = MakeClient("first");
    CTestClient& second = MakeClient("second");
    MakeCanvas(first, L"A & B");
    MakeCanvas(second, L"絵");
    for (int i = 0; i < 2; ++i) { // a second time lists them once
        GetMenu(2).popup({});
        GetMenu(2).close();
    }
    EXPECT_EQ(TextsOf(GetMenu(2)).mid(1), (QStringList{"-", "&1 A && B", "&2 絵"}));
    EXPECT_TRUE(GetMenu(2).actions()[3]->isChecked());
    m_vLog.clear();
    GetMenu(2).actions()[2]->trigger();
    EXPECT_EQ(m_vLog, (std::vector<std::string>{"second: activate 0", "first: activate 1"}));
}

TEST_F(CUiTest, ToolBarShowsStatesWithoutNeedlessRepaint) {
    CTestClient& canvas = MakeClient("canvas");
    MakeCanvas(canvas, L"絵");
    auto* pToolBar = GetWidget().findChild<QToolBar*>();
    QAction* pUndo = pToolBar->actions()[2];
    EXPECT_EQ(pUndo->toolTip(), QString::fromWCharArray(L"取り消し (F3, Ctrl+Z)"));
    EXPECT_FALSE(pUndo->icon().isNull());
    QSignalSpy spy(pUndo, &QAction::changed);
    m_pMain->GetToolBarLook().SetState(57643, false, true);
    EXPECT_FALSE(pUndo->isEnabled());
    EXPECT_TRUE(pUndo->isChecked());
    const qsizetype nChanges = spy.size();
    m_pMain->GetToolBarLook().SetState(57643, false, true);
    EXPECT_EQ(spy.size(), nChanges);
}

TEST_F(CUiTest, ZoomBoxPostsOnlyTheUsersChoice) {
    m_pMain->SetZoomItems({L"1600%", L"等角", L"1/2"});
    EXPECT_EQ(m_pMain->GetZoomItem(), -1);
    m_pMain->SelectZoomItem(1);
    m_pMain->SelectZoomItem(99);
    EXPECT_EQ(m_pMain->GetZoomItem(), -1);
    Turn();
    EXPECT_TRUE(m_main.Got(EMessage::Command).empty());

    auto* pCombo = GetWidget().findChild<QComboBox*>();
    EXPECT_EQ(pCombo->accessibleName(), QString::fromWCharArray(L"拡大率"));
    emit pCombo->activated(2);
    Turn();
    ASSERT_EQ(m_main.Got(EMessage::Command).size(), 1u);
    EXPECT_EQ(m_main.Got(EMessage::Command)[0].wParam, 101);
    EXPECT_EQ(m_main.Got(EMessage::Command)[0].lParam, 2);
}

TEST_F(CUiTest, JapaneseTextsHaveGlyphs) {
    // The families of each font in order: what none of them has would come out as a box.
    for (const QWidget* pWidget :
         {static_cast<QWidget*>(&GetMenu(0)), static_cast<QWidget*>(GetWidget().menuBar())}) {
        QString strMissing = QString::fromWCharArray(L"筆圧ー弱中強～拡大率キャンセル");
        for (const QString& strFamily : pWidget->font().families()) {
            const QRawFont font = QRawFont::fromFont(QFont(strFamily));
            strMissing.removeIf([&](QChar ch) { return font.supportsCharacter(ch); });
        }
        EXPECT_TRUE(strMissing.isEmpty()) << strMissing.toStdString();
    }
}

TEST_F(CUiTest, DroppedFilesComeOneALine) {
    QMimeData data;
    data.setUrls(
        {QUrl::fromLocalFile("/a/絵.vlm"), QUrl("http://example.org/x.png"), QUrl::fromLocalFile("/b.png")});
    QDragEnterEvent enter({}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&GetWidget(), &enter);
    QDropEvent event({}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&GetWidget(), &event);
    Turn();
    ASSERT_EQ(m_main.Got(EMessage::DropFiles).size(), 1u);
    EXPECT_EQ(m_main.Got(EMessage::DropFiles)[0].strText, L"/a/絵.vlm\n/b.png");
}
