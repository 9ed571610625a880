// Fingers on a touch screen, as the window system reports them to Qt.
#include "tests/support/Session.h"
#include "tests/ui/UiTest.h"
#include "ui/input/QtTouch.h"

namespace {

class CScreen {
public:
    explicit CScreen(QWidget& view) : m_view(view) {}
    QTest::QTouchEventWidgetSequence Touch() { return QTest::touchEvent(m_view.window(), m_pDevice.get()); }
    void Press(int nFinger, QPoint pt) { Touch().press(nFinger, pt, &m_view); }
    void Move(int nFinger, QPoint pt) { Touch().move(nFinger, pt, &m_view); }
    void Move(QPoint ptFirst, QPoint ptSecond) {
        Touch().move(1, ptFirst, &m_view).move(2, ptSecond, &m_view);
    }
    /// Another finger comes, or one goes, while the first or the other stays.
    void Join(QPoint ptStays, QPoint pt) { Touch().move(1, ptStays, &m_view).press(2, pt, &m_view); }
    void Leave(int nFinger, QPoint pt, QPoint ptStays) {
        Touch().release(nFinger, pt, &m_view).move(3 - nFinger, ptStays, &m_view);
    }
    void Lift(int nFinger, QPoint pt) { Touch().release(nFinger, pt, &m_view); }
    /// The window system takes the fingers for itself.
    void Cancel() {
        QTouchEvent event(QEvent::TouchCancel, m_pDevice.get());
        QCoreApplication::sendEvent(&m_view, &event);
    }

private:
    QWidget& m_view;
    std::unique_ptr<QPointingDevice> m_pDevice{QTest::createTouchDevice()};
};

using TOne = std::pair<int64_t, int64_t>;
TOne At(int64_t nKeys, int x, int y) { return {nKeys, PackPoint(x, y)}; }

} // namespace

TEST_F(CUiTest, OneFingerIsTheLeftButtonAndTwoZoomAndMoveThePicture) {
    ICanvasWindow* pCanvas = Open(m_a);
    Open(m_b);
    CScreen screen(*ViewOf(pCanvas).viewport());
    pCanvas->SetRect({0, 0, 200, 160});
    pCanvas->SetScroll({3000, 2000}, {10, 10}, {100, 100}, {500, 600});
    const auto ends = [&] {
        return std::pair(m_a.Got(EMessage::LButtonUp), m_a.Got(EMessage::CaptureChanged));
    };
    // The press of a window that is not active goes where the mouse's goes.
    screen.Press(1, {10, 20});
    screen.Move(1, {12, 25});
    QTest::qWait(CQtTouch::PINCH_MS + 20);
    screen.Join({12, 25}, {50, 60});
    screen.Move({14, 25}, {90, 90});
    screen.Leave(1, {15, 26}, {90, 90});
    screen.Touch()
        .move(2, {60, 60}, ViewOf(pCanvas).viewport())
        .press(3, {20, 20}, ViewOf(pCanvas).viewport());
    screen.Touch()
        .move(2, {60, 90}, ViewOf(pCanvas).viewport())
        .move(3, {20, 50}, ViewOf(pCanvas).viewport());
    screen.Touch()
        .release(2, {60, 90}, ViewOf(pCanvas).viewport())
        .release(3, {20, 50}, ViewOf(pCanvas).viewport());
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::MouseActivate).size(), 1u);
    EXPECT_EQ(m_a.Got(EMessage::LButtonDown), TParams{At(MOUSE_LEFT, 10, 20)});
    EXPECT_EQ(m_a.Got(EMessage::MouseMove),
              (TParams{At(MOUSE_LEFT, 12, 25), At(MOUSE_LEFT, 12, 25), At(MOUSE_LEFT, 14, 25)}));
    EXPECT_EQ(ends(), std::pair(TParams{At(0, 15, 26)}, TParams{}))
        << "a hand that comes late spoils nothing";

    // Two fingers: 40 pixels between them, the middle at 30, 40; then 50 pixels, the middle at 45, 60.
    screen.Press(1, {10, 40});
    screen.Join({10, 40}, {50, 40});
    Turn();
    EXPECT_EQ(ends(), std::pair(TParams{At(0, 15, 26)}, TParams{At(0, 0, 0)}));
    screen.Move({15, 60}, {55, 60});
    screen.Move({20, 60}, {70, 60});
    screen.Move({20, 70}, {70, 70}); // the zoomed picture's place is not known yet
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::Scroll), (TParams{{0, 495}, {1, 580}, {0, 485}}));
    EXPECT_EQ(m_a.Got(EMessage::Pinch), TParams{At(1, 45, 60)});
    pCanvas->SetScroll({3000, 2000}, {10, 10}, {100, 100}, {700, 800});
    screen.Move({20, 71}, {70, 71});
    screen.Leave(2, {70, 71}, {20, 71});
    screen.Move(1, {90, 90});
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::Scroll).back(), (TOne{1, 789}));
    screen.Join({90, 90}, {50, 90});
    screen.Move({90, 91}, {50, 91});
    screen.Leave(2, {50, 91}, {90, 91});
    screen.Lift(1, {90, 91});
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::Scroll).back(), (TOne{1, 788}));
    EXPECT_EQ(m_a.Got(EMessage::LButtonDown).size(), 2u) << "a finger that is left draws nothing";
    EXPECT_EQ(m_a.Got(EMessage::MouseMove).size(), 3u);
    EXPECT_EQ(m_a.Got(EMessage::Pinch).size(), 1u);
    screen.Press(9, {5, 6});
    screen.Lift(9, {5, 6});
    screen.Press(9, {7, 8});
    screen.Cancel();
    screen.Move(9, {9, 9});
    Turn();
    EXPECT_EQ(ends(), std::pair(TParams{At(0, 15, 26), At(0, 5, 6)}, TParams{At(0, 0, 0), At(0, 0, 0)}));
    EXPECT_EQ(m_a.Got(EMessage::MouseMove).size(), 3u);
}
