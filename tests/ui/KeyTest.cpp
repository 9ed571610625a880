#include "UiTest.h"

#include "ui/QtKeys.h"

#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>

TEST(QtKeys, CodesAreTheVirtualKeys) {
    const auto code = [](int nKey, Qt::KeyboardModifiers modifiers = {}, uint uScan = 0) {
        return VirtualKeyOf(QKeyEvent(QEvent::KeyPress, nKey, modifiers, uScan, 0, 0));
    };
    EXPECT_EQ(code(Qt::Key_A), 'A');
    EXPECT_EQ(code(Qt::Key_7), '7');
    EXPECT_EQ(code(Qt::Key_F1), 0x70);
    EXPECT_EQ(code(Qt::Key_Down), 0x28);
    EXPECT_EQ(code(Qt::Key_Plus), 0xBB);
    EXPECT_EQ(code(Qt::Key_Plus, Qt::KeypadModifier), 0x6B);
    EXPECT_EQ(code(Qt::Key_Minus, Qt::KeypadModifier), 0x6D);
    EXPECT_EQ(code(Qt::Key_3, Qt::KeypadModifier), 0x63);
    EXPECT_EQ(code(Qt::Key_Home, Qt::KeypadModifier), 0x24);
    EXPECT_EQ(code(Qt::Key_Backtab, Qt::ShiftModifier), 9);
    EXPECT_EQ(code(Qt::Key_Exclam, Qt::ShiftModifier, 10), '1');
    EXPECT_EQ(code(Qt::Key_ParenRight, Qt::ShiftModifier, 19), '0');
    EXPECT_EQ(code(Qt::Key_MediaPlay), 0);
}

TEST_F(CUiTest, KeyReachesTheWidgetOnlyWhenDeclined) {
    QLineEdit edit(&GetWidget());
    edit.show();
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_A);
    EXPECT_EQ(edit.text(), "");
    Turn([](const TMessage& msg) { return msg.id == EMessage::KeyDown; });
    EXPECT_EQ(edit.text(), "");

    QTest::keyClicks(&edit, "ab");
    Turn();
    EXPECT_EQ(edit.text(), "ab");
    ASSERT_EQ(m_main.Got(EMessage::KeyDown).size(), 2u);
    EXPECT_EQ(m_main.Got(EMessage::KeyDown)[1].wParam, 'B');
    EXPECT_EQ(m_main.Got(EMessage::KeyUp).size(), 3u);

    // A widget that has gone meanwhile gets nothing.
    auto pShort = std::make_unique<QLineEdit>(&GetWidget());
    QTest::keyClick(pShort.get(), Qt::Key_C);
    pShort.reset();
    Turn();
}

TEST_F(CUiTest, WindowSystemsKeysComeOnceAndMnemonicsOpenMenus) {
    GetWidget().activateWindow();
    QTest::keyClick(GetWidget().windowHandle(), Qt::Key_A);
    Turn();
    EXPECT_EQ(m_main.Got(EMessage::KeyDown).size(), 1u);
    EXPECT_EQ(m_main.Got(EMessage::KeyUp).size(), 1u);
    QTest::keyClick(GetWidget().windowHandle(), Qt::Key_F, Qt::AltModifier);
    EXPECT_EQ(QApplication::activePopupWidget(), &GetMenu(0));
    EXPECT_EQ(m_main.Got(EMessage::InitMenuPopup).size(), 1u);
    GetMenu(0).close();
}

TEST_F(CUiTest, DeclinedArrowMovesTheZoomBox) {
    m_pMain->SetZoomItems({L"200%", L"等角", L"1/2"});
    m_pMain->SelectZoomItem(0);
    QTest::keyClick(GetWidget().findChild<QComboBox*>(), Qt::Key_Down);
    Turn();
    EXPECT_EQ(m_pMain->GetZoomItem(), 1);
    ASSERT_EQ(m_main.Got(EMessage::Command).size(), 1u);
    EXPECT_EQ(m_main.Got(EMessage::Command)[0].lParam, 1);
}

TEST_F(CUiTest, KeysGoToTheActiveChildWithAltAsSystemKeys) {
    CTestClient& canvas = MakeClient("canvas");
    MakeCanvas(canvas, L"絵");
    QWidget* pView = GetWidget().focusWidget();
    ASSERT_TRUE(pView);
    QTest::keyPress(pView, Qt::Key_X, Qt::AltModifier);
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_X, Qt::AltModifier, "x", true);
    QCoreApplication::sendEvent(pView, &repeat);
    Turn();
    const std::vector<TMessage> vDown = canvas.Got(EMessage::SysKeyDown);
    ASSERT_EQ(vDown.size(), 3u);
    EXPECT_EQ(vDown[0].wParam, VK_Alt);
    EXPECT_EQ(vDown[1].lParam, 0);
    EXPECT_EQ(vDown[2].lParam, 1);
    EXPECT_TRUE(m_main.Got(EMessage::SysKeyDown).empty());
}

TEST_F(CUiTest, KeyStateIsThatOfTheMessageInHand) {
    IKeyState& keys = m_platform.GetPlatform().keys;
    std::vector<bool> vControl;
    m_main.m_fnHandle = [&](const TMessage& msg) {
        if (msg.id == EMessage::KeyDown && msg.wParam == 'Z') vControl.push_back(keys.IsKeyDown(VK_Control));
        return true;
    };
    // All of it, Ctrl's own keys too, has happened before the first message is taken.
    QTest::keyClick(&GetWidget(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyPress(&GetWidget(), Qt::Key_Z);
    Turn();
    EXPECT_EQ(vControl, (std::vector<bool>{true, false}));
    EXPECT_TRUE(keys.IsKeyDown('Z'));
    emit qApp->applicationStateChanged(Qt::ApplicationInactive);
    EXPECT_FALSE(keys.IsKeyDown('Z'));
    EXPECT_FALSE(keys.IsKeyDown(-1));
    EXPECT_FALSE(keys.IsKeyDown(256));
}

TEST_F(CUiTest, DialogsAndMenusKeepTheirKeys) {
    QDialog dialog(&GetWidget());
    dialog.setModal(true);
    dialog.show();
    QLineEdit edit(&GetWidget());
    QTest::keyClick(&edit, Qt::Key_A);
    dialog.close();
    GetMenu(0).popup({});
    QTest::keyClick(&GetMenu(0), Qt::Key_Escape);
    Turn();
    EXPECT_TRUE(m_main.Got(EMessage::KeyDown).empty());
    EXPECT_EQ(edit.text(), "a");
}

TEST_F(CUiTest, ChildrensOwnShortcuts) {
    CTestClient& first = MakeClient("first");
    CTestClient& second = MakeClient("second");
    MakeCanvas(first, L"A");
    MakeCanvas(second, L"B");
    m_vLog.clear();
    QWidget* pView = GetWidget().focusWidget();
    QTest::keyClick(pView, Qt::Key_Tab, Qt::ControlModifier);
    Turn();
    EXPECT_THAT(m_vLog, testing::IsSupersetOf({"second: activate 0", "first: activate 1"}));

    pView = GetWidget().focusWidget();
    QTest::keyClick(pView, Qt::Key_F4, Qt::ControlModifier);
    Turn();
    EXPECT_EQ(first.Got(EMessage::Close).size(), 1u);
    EXPECT_TRUE(second.Got(EMessage::Close).empty());
}
