// A tree of layers as a real widget, under the pointer and the keyboard.
#include "core/Platform/Panel.h"
#include "tests/ui/UiTest.h"
#include "ui/panels/QtTree.h"

namespace {

// The rows' parts from left to right, and their height; eyes are 24 wide.
constexpr int EYE = 12, TEXT = 150, ROW = 41;

/// Row 0 is an open set, 1 and 2 lie in it, of which 2 is hidden; 3 lies below.
class CTreeTest : public CUiTest {
protected:
    CTreeTest() {
        m_client.m_fnHandle = [this](const TMessage& msg) {
            static const std::map<EMessage, const char*> TOLD{
                {EMessage::PanelChange, "select"}, {EMessage::PanelRename, "rename"},
                {EMessage::PanelEye, "eye"},       {EMessage::PanelFold, "fold"},
                {EMessage::PanelDrop, "drop"},     {EMessage::PanelMenu, "menu"}};
            if (!TOLD.count(msg.id)) return false;
            std::string str = TOLD.at(msg.id) + (" " + std::to_string(PackedX(msg.lParam)));
            if (msg.id == EMessage::PanelEye || msg.id == EMessage::PanelFold)
                str += " " + std::to_string(PackedY(msg.lParam));
            if (msg.id == EMessage::PanelDrop)
                str += " " + std::to_string(DroppedRow(PackedY(msg.lParam))) + "?" +
                       std::to_string(DroppedAt(PackedY(msg.lParam)));
            m_vTold.push_back(str + QString::fromStdWString(msg.strText).toStdString());
            return true;
        };
        Open(m_a);
        m_pPanel = m_windows.CreatePanelWindow(*m_pMain, m_client, {L"Tree", L"レイヤー", m_vControls});
        m_pPanel->SetPlace({EPanelDock::Right, CRect({900, 100}, {260, 500}), true});
        m_pPanel->ShowPanel(true);
        Turn();
        m_pTree = GetWidget().findChild<QWidget*>("Tree")->findChild<QListView*>();
    }
    ~CTreeTest() override { m_pPanel->Destroy(); }
    static QPoint At(int x, int nRow, int dy = ROW / 2) { return {x, nRow * ROW + dy}; }
    void Mouse(QEvent::Type type, QPoint pt, Qt::KeyboardModifiers modifiers = {}) {
        const bool bMove = type == QEvent::MouseMove;
        const bool bUp = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, pt, m_pTree->viewport()->mapToGlobal(pt),
                          bMove ? Qt::NoButton : Qt::LeftButton, bUp ? Qt::NoButton : Qt::LeftButton,
                          modifiers);
        QCoreApplication::sendEvent(m_pTree->viewport(), &event);
    }
    void Drag(QPoint from, QPoint to) {
        Mouse(QEvent::MouseButtonPress, from);
        Mouse(QEvent::MouseMove, from + QPoint(0, 2)); // a trembling hand does not drag
        Mouse(QEvent::MouseMove, to);
        Mouse(QEvent::MouseButtonRelease, to);
    }
    void Click(QPoint pt, Qt::KeyboardModifiers modifiers = {}) {
        Mouse(QEvent::MouseButtonPress, pt, modifiers);
        Mouse(QEvent::MouseButtonRelease, pt, modifiers);
    }
    TLog Told() {
        Turn();
        return std::exchange(m_vTold, {});
    }

    std::vector<TPanelControl> m_vControls{
        {.kind = TPanelControl::EKind::Tree,
         .nId = 1,
         .vTree = {{.strText = L"S", .fold = EFold::Open, .eye = EEye::Shown},
                   {.strText = L"C", .nDepth = 1, .eye = EEye::Shown},
                   {.strText = L"B", .nDepth = 1, .eye = EEye::Hidden},
                   {.strText = L"A", .eye = EEye::Shown}},
         .nValue = 3,
         .bEditable = true,
         .szView = {200, 4 * ROW + 40}}};
    CTestClient m_client{"panel", m_vLog};
    TLog m_vTold;
    IPanelWindow* m_pPanel = nullptr;
    QListView* m_pTree = nullptr;
};

} // namespace

TEST_F(CTreeTest, EyesAreClickedSweptAndIsolated) {
    ASSERT_EQ(m_pTree->visualRect(m_pTree->model()->index(1, 0)).top(), ROW);
    Click(At(EYE, 2));
    EXPECT_EQ(Told(), TLog{"eye 2 1"});
    Click(At(EYE, 3), Qt::AltModifier);
    EXPECT_EQ(Told(), TLog{"eye 3 2"});
    Mouse(QEvent::MouseButtonPress, At(EYE, 0));
    for (int nRow = 1; nRow < 4; ++nRow) Mouse(QEvent::MouseMove, At(EYE + 60, nRow));
    Mouse(QEvent::MouseButtonRelease, At(EYE, 3));
    EXPECT_EQ(Told(), (TLog{"eye 0 0", "eye 1 0", "eye 3 0"})) << "the hidden one is passed over";
    Click(At(24 + 7, 0));
    EXPECT_EQ(Told(), TLog{"fold 0 1"});
}

TEST_F(CTreeTest, ARowIsDraggedAboveOntoAndBelowOthers) {
    const auto drop = [](int nRow, EDropAt at) {
        return "drop 3 " + std::to_string(nRow) + "?" + std::to_string(static_cast<int>(at));
    };
    const std::pair<QPoint, std::string> CASES[] = {{At(TEXT, 1, 4), drop(1, EDropAt::Above)},
                                                    {At(TEXT, 1), drop(1, EDropAt::Onto)},
                                                    {At(TEXT, 2, ROW - 4), drop(2, EDropAt::Below)}};
    for (const auto& [pt, strDrop] : CASES) {
        Drag(At(TEXT, 3), pt);
        EXPECT_EQ(Told(), (TLog{"select 3", strDrop}));
    }
    Drag(At(TEXT, 0), At(TEXT, 4)); // below all rows
    EXPECT_EQ(Told(), (TLog{"select 0", "drop 0 4?2"}));
    Drag(At(TEXT, 3), At(TEXT, 3, ROW / 2 + 5));
    EXPECT_EQ(Told(), TLog{"select 3"});
    Mouse(QEvent::MouseButtonPress, At(TEXT, 3));
    Mouse(QEvent::MouseMove, At(TEXT, 1));
    QTest::keyClick(m_pTree, Qt::Key_Escape);
    Mouse(QEvent::MouseButtonRelease, At(TEXT, 1));
    EXPECT_EQ(Told(), TLog{"select 3"}) << "given up";
}

TEST_F(CTreeTest, KeysSelectShowFoldAndRename) {
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Space, Qt::Key_Left})
        QTest::keyClick(m_pTree, key);
    EXPECT_EQ(Told(), (TLog{"select 2", "eye 3 0"})) << "nothing lies below the last row";
    m_vControls[0].nValue = 0;
    m_pPanel->SetControls(m_vControls);
    QTest::keyClick(m_pTree, Qt::Key_Left);
    EXPECT_EQ(Told(), TLog{"fold 0 1"});
    QTest::keyClick(m_pTree, Qt::Key_F2);
    auto* pEdit = m_pTree->findChild<QLineEdit*>();
    ASSERT_NE(pEdit, nullptr);
    EXPECT_EQ(pEdit->selectedText(), "S");
    QTest::keyClicks(pEdit, "x");
    m_vControls[0].vTree[0].strNote = L"50%"; // a thumbnail or an opacity may change meanwhile
    m_pPanel->SetControls(m_vControls);
    QTest::keyClicks(pEdit, "y");
    static QStringList lstWarnings;
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& str) { lstWarnings << str; });
    QTest::keyClick(pEdit, Qt::Key_Return);
    EXPECT_EQ(Told(), TLog{"rename 0xy"});
    qInstallMessageHandler(before);
    EXPECT_TRUE(lstWarnings.filter("editor").isEmpty())
        << "an editor that is closed twice is used after its end";
}

TEST(TreeParts, RowsWithoutAnEyeAreIndentedBelowTheirTitle) {
    const QRect rc(0, 20, 200, 20);
    const TTreeParts plain({.strText = L"p"}, rc, {}), title({.strText = L"t", .fold = EFold::Open}, rc, {}),
        line({.strText = L"l", .nDepth = 1}, rc, {});
    EXPECT_TRUE(plain.rcFold.isEmpty());
    EXPECT_TRUE(title.rcFold.contains(QPoint(5, 30)));
    EXPECT_GT(title.rcText.left(), plain.rcText.left());
    EXPECT_GE(line.rcText.left(), title.rcText.left());
    for (const TTreeParts* p : {&plain, &title, &line}) EXPECT_EQ(p->rcText.right(), plain.rcText.right());
}

TEST(TreeParts, InkTakesTheColourOfTheText) {
    TPicture picture{{1, 1}, {0, 0, 0, 255}};
    CTreeModel model;
    const auto paint = [&](bool bInk, uint8_t uLevel) {
        std::fill_n(picture.vPixels.begin(), 3, uLevel);
        model.SetRows({{.strText = L"", .spPicture = boost::make_shared<TPicture>(picture), .bInk = bInk}},
                      false);
        QImage image(60, 24, QImage::Format_RGB32);
        image.fill(QColor(40, 40, 40));
        QStyleOptionViewItem option;
        option.rect = image.rect();
        option.state = QStyle::State_Enabled;
        option.palette.setColor(QPalette::Text, QColor(200, 210, 220));
        QPainter painter(&image);
        CTreeDelegate(model, {20, 20}, {}, nullptr).paint(&painter, option, model.index(0));
        return image.pixelColor(12, 12);
    };
    EXPECT_EQ(paint(true, 0), QColor(200, 210, 220));
    EXPECT_EQ(paint(true, 255), QColor(40, 40, 40)) << "the row's ground";
    EXPECT_EQ(paint(false, 255), QColor(255, 255, 255)) << "a picture stays as it is";
}
