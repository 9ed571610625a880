#include "tests/ui/UiTest.h"

#include "ui/input/QtKeys.h"

TEST(QtKeys, CodesAreTheVirtualKeys) {
    constexpr auto NONE = Qt::NoModifier, SHIFT = Qt::ShiftModifier, PAD = Qt::KeypadModifier;
    const std::tuple<int, Qt::KeyboardModifier, uint, int> aCases[] = {
        {Qt::Key_A, NONE, 0, 'A'},        {Qt::Key_7, NONE, 0, '7'},
        {Qt::Key_F1, NONE, 0, 0x70},      {Qt::Key_Plus, NONE, 0, 0xBB},
        {Qt::Key_Plus, PAD, 0, 0x6B},     {Qt::Key_3, PAD, 0, 0x63},
        {Qt::Key_Home, PAD, 0, 0x24},     {Qt::Key_Backtab, SHIFT, 0, 9},
        {Qt::Key_Exclam, SHIFT, 10, '1'}, {Qt::Key_ParenRight, SHIFT, 19, '0'},
        {Qt::Key_Z, NONE, 10, 'Z'},       {Qt::Key_MediaPlay, NONE, 0, 0}};
    for (const auto& [nKey, modifier, uScan, nCode] : aCases)
        EXPECT_EQ(VirtualKeyOf(QKeyEvent(QEvent::KeyPress, nKey, modifier, uScan, 0, 0)), nCode) << nKey;
}

TEST_F(CUiTest, KeyReachesTheWidgetOnlyWhenDeclined) {
    auto pEdit = std::make_unique<QLineEdit>(&GetWidget());
    m_main.m_fnHandle = [](const TMessage& msg) { return msg.wParam == 'A'; };
    QTest::keyClicks(pEdit.get(), "abc");
    EXPECT_EQ(pEdit->text(), "");
    Turn();
    EXPECT_EQ(pEdit->text(), "bc");
    EXPECT_EQ(m_main.Got(EMessage::KeyDown), (TParams{{'A', 0}, {'B', 0}, {'C', 0}}));
    // A widget that was deleted meanwhile gets nothing.
    QTest::keyClick(pEdit.get(), Qt::Key_D);
    pEdit.reset();
    Turn();
}

TEST_F(CUiTest, KeysGoToTheActiveChildWithAltAsSystemKeys) {
    Open(m_a);
    QWidget* pView = GetWidget().focusWidget();
    QTest::keyPress(pView, Qt::Key_X, Qt::AltModifier);
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_X, Qt::AltModifier, "x", true);
    QCoreApplication::sendEvent(pView, &repeat);
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::SysKeyDown), (TParams{{VK_Alt, 0}, {'X', 0}, {'X', 1}}));
    EXPECT_EQ(m_main.Got(EMessage::SysKeyDown), TParams());
}

TEST_F(CUiTest, KeyStateIsThatOfTheMessageInHand) {
    IKeyState& keys = m_platform.GetPlatform().keys;
    std::vector<bool> vControl;
    m_main.m_fnHandle = [&](const TMessage& msg) {
        if (msg.id == EMessage::KeyDown && msg.wParam == 'Z') vControl.push_back(keys.IsKeyDown(VK_Control));
        return true;
    };
    // All events, including Ctrl's own, happen before the first message is handled.
    QTest::keyClick(&GetWidget(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyPress(&GetWidget(), Qt::Key_Z);
    // Sticky keys: Ctrl counts as held and has no event.
    QKeyEvent sticky(QEvent::KeyPress, Qt::Key_Z, Qt::ControlModifier);
    QCoreApplication::sendEvent(&GetWidget(), &sticky);
    Turn();
    EXPECT_EQ(vControl, (std::vector<bool>{true, false, true}));
    EXPECT_TRUE(keys.IsKeyDown('Z'));
    emit qApp->applicationStateChanged(Qt::ApplicationInactive);
    EXPECT_FALSE(keys.IsKeyDown('Z') || keys.IsKeyDown(-1) || keys.IsKeyDown(256));
}

TEST_F(CUiTest, WhereverAKeyComesUpThePictureHearsOfIt) {
    Open(m_a);
    QWidget* pView = GetWidget().focusWidget();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Alt}) QTest::keyPress(pView, key);
    Turn();
    emit qApp->applicationStateChanged(Qt::ApplicationInactive);
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::KeyUp), (TParams{{VK_Space, 0}})) << "the hand lets go";
    EXPECT_EQ(m_a.Got(EMessage::SysKeyUp), (TParams{{VK_Alt, 0}}));
    emit qApp->applicationStateChanged(Qt::ApplicationInactive);
    QTest::keyClick(pView, Qt::Key_Shift);
    emit qApp->applicationStateChanged(Qt::ApplicationInactive);
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::KeyUp), (TParams{{VK_Space, 0}, {VK_Shift, 0}})) << "each once";
    QTest::keyPress(pView, Qt::Key_Space);
    Turn();
    QDialog dialog(&GetWidget());
    dialog.setModal(true);
    dialog.show();
    QTest::keyRelease(&dialog, Qt::Key_Space);
    QTest::keyClick(&dialog, Qt::Key_B);
    dialog.close();
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::KeyUp), (TParams{{VK_Space, 0}, {VK_Shift, 0}, {VK_Space, 0}}))
        << "once, and nothing of B";
}
