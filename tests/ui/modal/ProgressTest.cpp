#include "tests/ui/UiTest.h"

#include "core/Base/Failure.h"

namespace {

/// A window of the session's platform, shown over its main window.
class CShownProgress {
public:
    CShownProgress(IProgressWindow& window, IWindow* pOwner, bool bCancel) : m_window(window) {
        m_window.Begin({pOwner, L"保存", bCancel});
    }
    ~CShownProgress() { m_window.End(); }
    bool Show(int nPermille) { return m_window.Show({L"書いています", nPermille}); }
    QWidget* Get() const { return QApplication::activeModalWidget(); }

private:
    IProgressWindow& m_window;
};

} // namespace

TEST_F(CUiTest, LongWorkShowsHowFarItIsAndCanBeCancelled) {
    IProgressWindow& window = m_platform.GetPlatform().progress;
    {
        CShownProgress progress(window, m_pMain, true);
        EXPECT_EQ(progress.Get(), nullptr) << "not before it is shown";
        EXPECT_TRUE(progress.Show(250));
        auto* pDialog = progress.Get();
        ASSERT_TRUE(pDialog && pDialog->isVisible() && pDialog->parentWidget() == &GetWidget());
        EXPECT_EQ(pDialog->windowTitle(), "保存");
        EXPECT_EQ(pDialog->findChild<QLabel*>()->text(), "書いています");
        auto* pBar = pDialog->findChild<QProgressBar*>();
        EXPECT_TRUE(pBar->value() == 250 && pBar->maximum() == 1000);
        EXPECT_TRUE(progress.Show(TProgressState::UNKNOWN) && pBar->maximum() == 0);
        QWidget* pFocus = pDialog->focusWidget() ? pDialog->focusWidget() : pDialog;
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) QTest::keyClick(pFocus, key);
        EXPECT_TRUE(progress.Show(280)) << "typed when the window opened";
        QTest::keyClick(pDialog, Qt::Key_Escape);
        EXPECT_TRUE(!progress.Show(300) && pDialog->isVisible()) << "it stays until the work has ended";
    }
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    CShownProgress fixed(window, m_pMain, false);
    EXPECT_TRUE(fixed.Show(1) && fixed.Get()->findChildren<QPushButton*>().isEmpty());
    QTest::keyClick(fixed.Get(), Qt::Key_Escape);
    fixed.Get()->close();
    EXPECT_TRUE(fixed.Show(2) && fixed.Get() && fixed.Get()->isVisible()) << "nothing can cancel it";
}

TEST_F(CUiTest, NothingReachesTheApplicationInTheMiddleOfItsWork) {
    ICanvasWindow* pCanvas = Open(m_a);
    QAbstractScrollArea& view = ViewOf(pCanvas);
    pCanvas->Invalidate();
    Turn();
    EXPECT_FALSE(m_a.m_vPainted.empty());
    m_a.m_vPainted.clear();
    const size_t nSizes = m_a.Got(EMessage::Size).size();
    {
        CShownProgress progress(m_platform.GetPlatform().progress, pCanvas, true);
        progress.Show(0);
        pCanvas->Invalidate();
        dynamic_cast<QWidget*>(pCanvas)->resize(400, 300);
        QTest::mouseClick(GetWidget().windowHandle(), Qt::LeftButton, {},
                          view.viewport()->mapTo(&GetWidget(), QPoint(9, 9)));
        EXPECT_TRUE(progress.Show(1));
        EXPECT_TRUE(m_a.m_vPainted.empty() && m_a.Got(EMessage::Size).size() == nSizes);
    }
    Turn();
    EXPECT_FALSE(m_a.m_vPainted.empty()) << "what changed is painted afterwards";
    EXPECT_GT(m_a.Got(EMessage::Size).size(), nSizes) << "and the new size is told";
    EXPECT_TRUE(m_a.Got(EMessage::LButtonDown).empty()) << "other windows take no input";
}
