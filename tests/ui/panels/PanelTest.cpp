#include "core/Platform/Panel.h"
#include "tests/ui/UiTest.h"

namespace {

using enum TPanelControl::EKind;

const TPanelPlace DOCKED{EPanelDock::Right, CRect({900, 100}, {260, 500}), true};

struct CPlainView : IPanelView {
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override {
        const int nStride = paint.sz.cx * 4;
        const std::string strPixels(static_cast<size_t>(nStride * paint.sz.cy), '\x40');
        target.Blit(reinterpret_cast<const uint8_t*>(strPixels.data()), nStride, paint.sz,
                    CRect({0, 0}, paint.sz));
    }
};

/// A panel of each kind of control; its changes are stored as "change 3 1".
class CPanelTest : public CUiTest {
protected:
    CPanelTest() {
        m_client.m_fnHandle = [this](const TMessage& msg) {
            static const std::map<EMessage, const char*> TOLD{
                {EMessage::PanelChange, "change "}, {EMessage::PanelActivate, "activate "},
                {EMessage::PanelRename, "rename "}, {EMessage::PanelMove, "move "},
                {EMessage::LButtonDown, "down "},   {EMessage::KeyDown, "key "}};
            if (!TOLD.count(msg.id)) return false;
            const bool bView = PackedView(msg.wParam) != 0;
            m_vTold.push_back(TOLD.at(msg.id) + std::to_string(bView ? PackedView(msg.wParam) : msg.wParam) +
                              " " + std::to_string(msg.lParam) + ToQtText(msg.strText));
            return true;
        };
        m_vControls[4].szView = {100, 60};
        m_pPanel = Make(L"Test");
        Show(*m_pPanel, DOCKED);
        Open(m_a);
        Turn();
    }
    ~CPanelTest() override {
        for (IPanelWindow* pPanel : m_vPanels) pPanel->Destroy();
    }
    static void Show(IPanelWindow& panel, const TPanelPlace& place) {
        panel.SetPlace(place);
        panel.ShowPanel(true);
    }
    IPanelWindow* Make(const std::wstring& strName) {
        m_vPanels.push_back(
            m_windows.CreatePanelWindow(*m_pMain, m_client, {strName, L"パネル", m_vControls}));
        return m_vPanels.back();
    }
    static std::string ToQtText(const std::wstring& str) {
        return str.empty() ? "" : " " + QString::fromStdWString(str).toStdString();
    }
    template <class Widget>
    Widget& Get(int nId) {
        auto* pWidget = GetWidget().findChild<QWidget*>("Test")->findChild<QWidget*>(QString::number(nId));
        if (auto* p = dynamic_cast<Widget*>(pWidget)) return *p;
        return *pWidget->findChild<Widget*>();
    }
    TLog Told() {
        Turn();
        return std::exchange(m_vTold, {});
    }
    QWidget* Focus() { return GetWidget().focusWidget(); }

    CPlainView m_view;
    std::vector<TPanelControl> m_vControls{
        {.kind = Check, .nId = 1, .strText = L"太さ"},
        {.kind = Combo, .nId = 2, .strLabel = L"硬さ", .vRows = {L"a", L"b", L"c"}},
        {.kind = Slider, .nId = 3, .vStops = {1, 2, 4, 8, 100}, .nMin = 1, .nMax = 100, .nValue = 2},
        {.kind = Text, .nId = 4, .strText = L"#000000"},
        {.kind = List, .nId = 5, .vRows = {L"x", L"y", L"z"}, .nValue = -1, .bEditable = true},
        {.kind = View, .nId = 6, .szView = {100, 50}, .pView = &m_view},
        {.kind = Toggle, .nId = 7, .strText = L"筆", .strIcon = "icons/tool-brush.svg"},
    };
    CTestClient m_client{"panel", m_vLog};
    TLog m_vTold;
    std::vector<IPanelWindow*> m_vPanels;
    IPanelWindow* m_pPanel = nullptr;
};

} // namespace

TEST_F(CPanelTest, ControlsTellTheUsersChangesOnly) {
    QTest::mouseClick(&Get<QCheckBox>(1), Qt::LeftButton, {}, {8, Get<QCheckBox>(1).height() / 2});
    QTest::mouseClick(&Get<QToolButton>(7), Qt::LeftButton);
    EXPECT_EQ(Told(), (TLog{"change 1 1", "change 7 1"}));
    QTest::keyClick(&Get<QComboBox>(2), Qt::Key_Down);
    QTest::keyClick(&Get<QSlider>(3), Qt::Key_Right); // to the next stop
    Get<QSpinBox>(3).setValue(50);
    EXPECT_EQ(Told(), (TLog{"change 2 1", "change 3 4", "change 3 50"}));
    m_vControls[0].nValue = 0;
    m_vControls[2].nValue = 8;
    m_vControls[4].vRows = {L"y", L"x"};
    m_vControls[4].nValue = 1;
    m_vControls[1].vRows = {L"a", L"d"};
    m_vControls[1].nValue = 1;
    m_vControls[1].bVisible = false;
    m_pPanel->SetControls(m_vControls);
    EXPECT_EQ(Told(), TLog{});
    EXPECT_FALSE(Get<QCheckBox>(1).isChecked() || Get<QToolButton>(7).isChecked());
    EXPECT_TRUE(Get<QSlider>(3).value() == 3 && Get<QSpinBox>(3).value() == 8);
    EXPECT_EQ(Get<QListWidget>(5).currentItem()->text(), "x");
    EXPECT_FALSE(Get<QComboBox>(2).isVisible());
    EXPECT_EQ(Get<QComboBox>(2).currentText(), "d");
}

TEST_F(CPanelTest, ListsAreRenamedDraggedAndChosen) {
    auto& list = Get<QListWidget>(5);
    list.item(1)->setText("名");
    EXPECT_EQ(Told(), TLog{"rename 5 1 名"});
    m_pPanel->SetControls(m_vControls); // the panel would not accept it
    EXPECT_EQ(list.item(1)->text(), "y");
    m_pMain->Show();
    QWidget* const pView = Focus();
    list.setCurrentRow(2);
    list.editItem(list.item(2));
    auto* pEditor = list.findChild<QLineEdit*>();
    ASSERT_NE(pEditor, nullptr);
    pEditor->setText("Gペン");
    QTest::keyClick(pEditor, Qt::Key_Return);
    EXPECT_EQ(Told(), (TLog{"change 5 2", "rename 5 2 Gペン"}));
    EXPECT_EQ(Focus(), pView);
    m_pPanel->SetControls(m_vControls);
    list.setCurrentRow(0);
    QTest::keyClick(&list, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(Told(), (TLog{"change 5 0", "move 5 " + std::to_string(PackPoint(0, 1)), "activate 5 0"}));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, {20, list.viewport()->height() - 2});
    EXPECT_EQ(list.selectedItems().size(), 1); // a click beside the rows selects nothing
}

TEST_F(CPanelTest, OnlyTextTakesTheKeyboardByAClick) {
    m_pMain->Show();
    QWidget* const pView = Focus();
    ASSERT_NE(pView, nullptr);
    for (QWidget* pWidget :
         std::initializer_list<QWidget*>{&Get<QCheckBox>(1), &Get<QSlider>(3), Get<QListWidget>(5).viewport(),
                                         &Get<QWidget>(6), &Get<QToolButton>(7)}) {
        QTest::mouseClick(pWidget, Qt::LeftButton);
        EXPECT_EQ(Focus(), pView) << pWidget->metaObject()->className();
    }
    auto& text = Get<QLineEdit>(4);
    QTest::mouseClick(&text, Qt::LeftButton);
    EXPECT_EQ(Focus(), &text);
    // Typed text is no shortcut; Return and Escape return the focus.
    text.selectAll();
    QTest::keyClicks(&text, "x1");
    Told();
    QTest::keyClick(&text, Qt::Key_Return);
    EXPECT_EQ(Told(), TLog{"change 4 0 x1"});
    EXPECT_EQ(Focus(), pView);
    text.setFocus();
    // A shortcut still works, without the picture.
    QTest::keyClick(&text, Qt::Key_S, Qt::ControlModifier);
    QTest::keyClick(&text, Qt::Key_Escape);
    Turn();
    EXPECT_EQ(Focus(), pView);
    EXPECT_EQ(m_a.Got(EMessage::KeyDown), TParams());
    EXPECT_THAT(m_main.Got(EMessage::KeyDown), testing::Contains(std::pair<int64_t, int64_t>{'S', 0}));
}

TEST_F(CPanelTest, WhatATextDeclinesNeverReachesThePicture) {
    IKeyState& keys = m_platform.GetPlatform().keys;
    Get<QSpinBox>(3).setFocus();
    for (QWidget* pText : std::initializer_list<QWidget*>{&Get<QSpinBox>(3), &Get<QLineEdit>(4)}) {
        pText->setFocus();
        for (const auto& [nKey, modifier] : {std::pair{Qt::Key_X, Qt::NoModifier},
                                             {Qt::Key_Delete, Qt::NoModifier},
                                             {Qt::Key_Space, Qt::NoModifier},
                                             {Qt::Key_Up, Qt::ControlModifier},
                                             {Qt::Key_Control, Qt::NoModifier}}) {
            QTest::keyPress(pText, nKey, modifier);
            Turn();
            // A tool would find it held at the pointer's next event; Ctrl counts wherever it is pressed.
            EXPECT_FALSE(keys.IsKeyDown('X') || keys.IsKeyDown(VK_Space) || keys.IsKeyDown(VK_Delete));
            EXPECT_EQ(keys.IsKeyDown(VK_Control), nKey == Qt::Key_Control || modifier == Qt::ControlModifier);
            QTest::keyRelease(pText, nKey, modifier);
            Turn();
        }
        EXPECT_EQ(Focus(), pText);
    }
    EXPECT_EQ(m_a.Got(EMessage::KeyDown), TParams());
}

TEST_F(CPanelTest, TheKeyboardAloneReachesEveryControlAndShortcutsStillWork) {
    QSet<QWidget*> vReached;
    for (int n = 0; n < 40; ++n) {
        QTest::keyClick(Focus(), Qt::Key_Tab);
        Turn();
        vReached.insert(Focus());
    }
    for (QWidget* pWidget : std::initializer_list<QWidget*>{
             &Get<QCheckBox>(1), &Get<QComboBox>(2), &Get<QSlider>(3), &Get<QSpinBox>(3), &Get<QLineEdit>(4),
             &Get<QListWidget>(5), &Get<QWidget>(6), &Get<QToolButton>(7)})
        EXPECT_TRUE(vReached.contains(pWidget)) << pWidget->metaObject()->className();
    Get<QCheckBox>(1).setFocus();
    Told();
    QTest::keyClick(&Get<QCheckBox>(1), Qt::Key_Space);
    QTest::keyClick(&Get<QWidget>(6), Qt::Key_Left);
    EXPECT_EQ(Told(), (TLog{"change 1 1", "key 6 0"}));
    // A control does not use these: the application gets them.
    QTest::keyClick(&Get<QCheckBox>(1), Qt::Key_X);
    QTest::keyClick(&Get<QSlider>(3), Qt::Key_Z, Qt::ControlModifier);
    Turn();
    for (const int64_t n : {'X', 'Z'})
        EXPECT_THAT(m_a.Got(EMessage::KeyDown), testing::Contains(std::pair<int64_t, int64_t>{n, 0}));
}

TEST_F(CPanelTest, PlacesComeBackAndAPanelGoesWithItsWindow) {
    const TPanelPlace place = m_pPanel->GetPlace();
    EXPECT_TRUE(place.dock == EPanelDock::Right && place.bShow && place.rc.Width() >= 200);
    IPanelWindow* pOther = Make(L"Other");
    for (IPanelWindow* pFront : {pOther, m_pPanel}) { // panels at one place are tabbed
        pFront == pOther ? Show(*pOther, DOCKED) : pFront->ShowPanel(true);
        Turn();
        EXPECT_EQ(m_pPanel->GetPlace().rc, pOther->GetPlace().rc);
        EXPECT_TRUE(pFront->GetPlace().bFront && m_pPanel->GetPlace().bFront != pOther->GetPlace().bFront);
    }
    const CRect rcFloat({40, 60}, {300, 320});
    Show(*pOther, {EPanelDock::Float, rcFloat, true});
    Turn();
    EXPECT_TRUE(pOther->GetPlace().dock == EPanelDock::Float);
    EXPECT_EQ(pOther->GetPlace().rc, rcFloat);
    pOther->ShowPanel(false);
    EXPECT_EQ(pOther->GetPlace().rc, rcFloat);
    EXPECT_FALSE(pOther->IsShown() || pOther->GetPlace().bShow);
    m_vLog.clear();
    m_vPanels.clear();
    m_pMain->Destroy();
    EXPECT_THAT(m_vLog, testing::Contains("panel final").Times(2));
    m_pMain = CreateMain(m_main);
}

TEST_F(CPanelTest, APenStrokeThatBeganOnTheCanvasStaysThere) {
    QWidget* const pView = Focus();
    QWidget* const pViewport = qobject_cast<QAbstractScrollArea*>(pView)->viewport();
    const auto move = [&](QEvent::Type type, QWidget& over, Qt::MouseButtons buttons) {
        const QPointF ptGlobal = over.mapToGlobal(QPointF(10, 10));
        const QPointF ptLocal = pViewport->mapFromGlobal(ptGlobal);
        QTabletEvent event(type, QPointingDevice::primaryPointingDevice(), ptLocal, ptGlobal, 0.5, 0, 0, 0, 0,
                           0, {}, type == QEvent::TabletMove ? Qt::NoButton : Qt::LeftButton, buttons);
        QCoreApplication::sendEvent(pViewport, &event);
    };
    for (const bool bFloats : {false, true}) {
        // A floating panel stands at the picture's edge, partly over it.
        const CPoint ptEdge{pViewport->mapToGlobal(QPoint(60, 10)).x(), 10};
        if (bFloats) Show(*m_pPanel, {EPanelDock::Float, CRect(ptEdge, {300, 320}), true});
        move(QEvent::TabletPress, *pViewport, Qt::LeftButton);
        move(QEvent::TabletMove, Get<QCheckBox>(1), Qt::LeftButton);
        m_pPanel->SetControls(m_vControls);
        m_pPanel->ShowPanel(false);
        m_pPanel->ShowPanel(true);
        move(QEvent::TabletMove, *pViewport, Qt::LeftButton);
        move(QEvent::TabletRelease, *pViewport, {});
        EXPECT_EQ(Told(), TLog{});
        EXPECT_EQ(m_a.Got(EMessage::PenPacket).size(), bFloats ? 8u : 4u);
        EXPECT_EQ(Focus(), pView);
    }
}
