#include "tests/ui/UiTest.h"

namespace {

class LongWorkWindow : public CUiTest {
protected:
    bool Show(int nPermille) { return m_window.Show({L"書いています", nPermille}); }
    static QWidget* Get() { return QApplication::activeModalWidget(); }
    IProgressWindow& m_window = m_platform.GetPlatform().progress;
};

} // namespace

TEST_F(LongWorkWindow, ShowsHowFarItIsAndCanBeCancelled) {
    m_window.Begin({m_pMain, L"保存", true});
    EXPECT_EQ(Get(), nullptr) << "not before it is shown";
    EXPECT_TRUE(Show(250));
    QWidget* pDialog = Get();
    ASSERT_TRUE(pDialog && pDialog->isVisible() && pDialog->parentWidget() == &GetWidget());
    EXPECT_EQ(pDialog->windowTitle() + pDialog->findChild<QLabel*>()->text(), "保存書いています");
    auto* pBar = pDialog->findChild<QProgressBar*>();
    EXPECT_TRUE(pBar->value() == 250 && pBar->maximum() == 1000);
    EXPECT_TRUE(Show(TProgressState::UNKNOWN) && pBar->maximum() == 0);
    QWidget* pFocus = pDialog->focusWidget() ? pDialog->focusWidget() : pDialog;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) QTest::keyClick(pFocus, key);
    EXPECT_TRUE(Show(280)) << "typed when the window opened";
    QTest::keyClick(pDialog, Qt::Key_Escape);
    EXPECT_TRUE(!Show(300) && pDialog->isVisible()) << "it stays until the work has ended";
    m_window.End();
    EXPECT_EQ(Get(), nullptr);
    m_window.Begin({m_pMain, L"保存", false});
    EXPECT_TRUE(Show(1) && Get()->findChildren<QPushButton*>().isEmpty());
    Get()->close();
    EXPECT_TRUE(Show(2) && Get() && Get()->isVisible()) << "nothing can cancel it";
    m_window.End();
}

TEST_F(LongWorkWindow, NothingReachesTheApplicationMeanwhile) {
    ICanvasWindow* pCanvas = Open(m_a);
    m_a.m_vPainted.clear();
    const size_t nSizes = m_a.Got(EMessage::Size).size();
    m_window.Begin({pCanvas, L"", true});
    Show(0);
    pCanvas->Invalidate();
    dynamic_cast<QWidget*>(pCanvas)->resize(400, 300);
    QTest::mouseClick(GetWidget().windowHandle(), Qt::LeftButton, {},
                      ViewOf(pCanvas).viewport()->mapTo(&GetWidget(), QPoint(9, 9)));
    EXPECT_TRUE(Show(1) && m_a.m_vPainted.empty() && m_a.Got(EMessage::Size).size() == nSizes);
    m_window.End();
    Turn();
    EXPECT_FALSE(m_a.m_vPainted.empty()) << "what changed is painted afterwards";
    EXPECT_GT(m_a.Got(EMessage::Size).size(), nSizes) << "and the new size is told";
    EXPECT_TRUE(m_a.Got(EMessage::LButtonDown).empty()) << "other windows take no input";
}
