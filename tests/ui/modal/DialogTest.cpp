#include "tests/ui/UiTest.h"

#include "core/Base/Text.h"
#include "tests/support/LiveDialog.h"
#include "ui/modal/QtFileDialogs.h"

namespace {

using TStep = std::function<void(QWidget&)>;

/// Runs the steps in order, each once a (new) modal window is open.
void Answer(std::vector<TStep> vSteps) {
    if (vSteps.empty()) return;
    QTimer::singleShot(20, qApp, [vSteps]() mutable {
        QWidget* pModal = QApplication::activeModalWidget();
        const auto step = vSteps.front();
        if (pModal) vSteps.erase(vSteps.begin());
        Answer(vSteps);
        if (pModal) step(*pModal);
    });
}

TStep Press(const wchar_t* pszText) {
    return [strText = QString::fromWCharArray(pszText)](QWidget& window) {
        for (QAbstractButton* pButton : window.findChildren<QAbstractButton*>())
            if (pButton->text().startsWith(strText)) return pButton->click();
        ADD_FAILURE() << "no button " << strText.toStdString();
        window.close();
    };
}

const TFileDialog g_Save{
    true, L"", L"vlm", {{L"線画 (*.vlm)", L"*.vlm"}, {L"JPEG (*.jpg;*.jpeg)", L"*.jpg;*.jpeg"}}};

} // namespace

TEST_F(CUiTest, BoxesAnswer) {
    const auto ask = [&](EBoxKind kind, TStep step) {
        Answer({std::move(step)});
        return m_platform.GetPlatform().boxes.Show(m_pMain, L"<b>?", L"Vellumcraft", kind);
    };
    const TStep close = [this](QWidget& box) {
        EXPECT_TRUE(box.parentWidget() == &GetWidget() && box.windowModality() == Qt::WindowModal);
        box.close();
    };
    EXPECT_EQ(ask(EBoxKind::YesNoCancelWarning, Press(L"はい")), EBoxAnswer::Yes);
    EXPECT_EQ(ask(EBoxKind::YesNoCancelWarning, Press(L"いいえ")), EBoxAnswer::No);
    EXPECT_EQ(ask(EBoxKind::YesNoCancelWarning, Press(L"キャンセル")), EBoxAnswer::Cancel);
    EXPECT_EQ(ask(EBoxKind::YesNoCancelWarning, close), EBoxAnswer::Cancel);
    EXPECT_EQ(ask(EBoxKind::Error, close), EBoxAnswer::Ok);
    const TStep seen = [](QWidget& box) {
        EXPECT_EQ(dynamic_cast<QMessageBox&>(box).icon(), QMessageBox::Warning);
        box.close();
    };
    EXPECT_EQ(ask(EBoxKind::Exclamation, seen), EBoxAnswer::Ok);
}

TEST_F(CUiTest, ADialogHearsOfEveryChangeAndShowsWhatFollows) {
    CLiveDialog dialog;
    const auto type = [](const char* pszText) -> TStep {
        return [=](QWidget& window) {
            auto* pEdit = window.findChild<QLineEdit*>("gamma");
            pEdit->setFocus();
            pEdit->selectAll();
            QTest::keyClicks(pEdit, pszText);
            QTest::keyClick(pEdit, Qt::Key_Tab);
        };
    };
    Answer({[](QWidget& window) { QTest::keyClick(window.findChild<QComboBox*>(), Qt::Key_Down); },
            [](QWidget& window) { QTest::keyClick(window.findChild<QSlider*>(), Qt::Key_Right); },
            [](QWidget& window) {
                const auto labels = window.findChildren<QLabel*>();
                EXPECT_TRUE(std::ranges::any_of(labels, [](QLabel* p) { return p->text() == "41"; }));
            },
            type("2.2"), type("x"),
            [](QWidget& window) {
                EXPECT_EQ(window.findChild<QLineEdit*>("gamma")->text(), "2.2") << "the old value stays";
                for (QWidget* pChild : window.findChildren<QWidget*>())
                    if (pChild->height() == 30 && pChild->focusPolicy() == Qt::TabFocus)
                        QTest::mousePress(pChild, Qt::LeftButton, {}, {5, 6});
            },
            Press(L"戻す"), Press(L"OK")});
    EXPECT_TRUE(m_platform.GetPlatform().dialogs.Run(m_pMain, dialog));
    EXPECT_EQ(dialog.m_strHeard, " 1=1 2=41 3=2.2 3=x 4down5,6 5=0 ok");
    EXPECT_EQ(dialog.m_szView.cy, 30);
}

namespace {

/// A view that grows beside a column; it writes down what it hears.
class CWideDialog : public CDialogModel, public IPanelView {
public:
    CWideDialog() {
        using enum TPanelControl::EKind;
        m_vControls = {
            {.kind = View, .nId = 1, .bStretch = true, .bHand = true, .szView = {200, 60}, .pView = this},
            {.kind = Button, .nId = 2, .strText = L"前", .bHold = true},
            {.kind = Column},
            {.kind = Slider, .nId = 3, .nMax = 512, .nValue = 256, .bBare = true, .nPage = 10},
            {.kind = Number, .nId = 4, .strText = L"４", .nMax = 9, .strName = "number"}};
    }
    const char* GetName() const override { return "CWideDialog"; }
    std::wstring GetTitle() const override { return L"横長"; }
    bool OnOk(IWindow*) override { return true; }
    void OnPaint(IPaintTarget&, const TPanelPaint&) override {}

    std::string m_strHeard;

protected:
    void OnControl(TPanelControl& control) override {
        m_strHeard += ' ' + std::to_string(control.nId) + '=' + std::to_string(control.nValue);
    }
};

} // namespace

TEST_F(CUiTest, AViewGrowsBesideAColumnAndAButtonActsWhileItIsHeld) {
    CWideDialog dialog;
    QWidget* pView = nullptr;
    QSize szBefore;
    Answer({[&](QWidget& window) {
                for (QWidget* pChild : window.findChildren<QWidget*>())
                    if (pChild->cursor().shape() == Qt::OpenHandCursor) pView = pChild;
                ASSERT_TRUE(pView);
                auto& slider = *window.findChild<QSlider*>();
                EXPECT_GE(slider.mapTo(&window, QPoint()).x(), pView->geometry().right());
                EXPECT_FALSE(window.findChild<QSpinBox*>()->isVisible());
                QTest::keyClick(&slider, Qt::Key_PageUp);
                auto* pNumber = window.findChild<QAbstractSpinBox*>("number");
                QTest::keyClick(pNumber, Qt::Key_Up);
                EXPECT_EQ(pNumber->text(), "5");
                szBefore = pView->size();
                window.resize(window.width() + 120, window.height() + 90);
            },
            [&](QWidget& window) {
                EXPECT_EQ(pView->size(), szBefore + QSize(120, 90));
                QTest::mousePress(window.findChild<QPushButton*>(), Qt::LeftButton);
            },
            [&](QWidget& window) {
                EXPECT_EQ(dialog.m_strHeard, " 3=266 4=0 2=1");
                QTest::mouseRelease(window.findChild<QPushButton*>(), Qt::LeftButton);
            },
            Press(L"OK")});
    EXPECT_TRUE(m_platform.GetPlatform().dialogs.Run(m_pMain, dialog));
    EXPECT_EQ(dialog.m_strHeard, " 3=266 4=0 2=1 2=0");
}

namespace {

/// Two pages, with the controls that no panel has; it writes down what it hears.
class CPagedDialog : public CDialogModel, public IPanelView {
public:
    CPagedDialog() {
        using enum TPanelControl::EKind;
        m_vControls = {{.kind = Page, .nId = 1, .strText = L"一", .strName = "first"},
                       {.kind = Text, .nId = 2, .bLive = true, .strName = "filter"},
                       {.kind = Page, .nId = 3, .strText = L"二", .nValue = 1, .strName = "second"},
                       {.kind = Key, .nId = 4, .strName = "key"},
                       {.kind = View, .nId = 5, .bPen = true, .szView = {60, 30}, .pView = this}};
    }
    const char* GetName() const override { return "CPagedDialog"; }
    std::wstring GetTitle() const override { return L"二枚"; }
    bool OnOk(IWindow*) override { return true; }
    void OnPaint(IPaintTarget&, const TPanelPaint&) override {}
    void OnPen(int nView, const TPenReport& report) override {
        m_strHeard += " pen" + std::to_string(nView) + '@' + std::to_string(report.packet.x / 32) + ',' +
                      std::to_string(report.packet.y / 32) + '=' + std::to_string(report.packet.uPressure);
    }

    std::string m_strHeard;

protected:
    void OnControl(TPanelControl& control) override {
        m_strHeard += ' ' + (control.nId == 2 ? ToUtf8(control.strText) : std::to_string(control.nValue));
        if (control.nId == 4) control.strText = L"taken";
    }
};

} // namespace

TEST_F(CUiTest, PagesKeysLiveTextsAndThePenReachTheDialog) {
    CPagedDialog dialog;
    const QPointingDevice pen = MakePen();
    Answer({[](QWidget& window) {
                auto& tabs = *window.findChild<QTabWidget*>();
                EXPECT_EQ(tabs.count(), 2);
                EXPECT_EQ(tabs.currentWidget()->objectName(), "second");
                EXPECT_FALSE(window.findChild<QWidget*>("first")->isVisible());
                auto* pKey = window.findChild<QLineEdit*>("key");
                QTest::keyClick(pKey, Qt::Key_Control, Qt::ControlModifier);
                QTest::keyClick(pKey, Qt::Key_U, Qt::ControlModifier | Qt::ShiftModifier);
            },
            [&](QWidget& window) {
                EXPECT_EQ(window.findChild<QLineEdit*>("key")->text(), "taken");
                EXPECT_FALSE(window.findChild<QWidget*>("first")->isVisible());
                for (QWidget* pChild : window.findChildren<QWidget*>())
                    if (pChild->height() == 30 && pChild->hasTabletTracking())
                        SendPen(*pChild, pen, {7, 9}, 1);
                window.findChild<QTabWidget*>()->setCurrentIndex(0);
                QTest::keyClicks(window.findChild<QLineEdit*>("filter"), "ab");
            },
            Press(L"OK")});
    EXPECT_TRUE(m_platform.GetPlatform().dialogs.Run(m_pMain, dialog));
    EXPECT_EQ(dialog.m_strHeard,
              " " + std::to_string('U' | KEY_CONTROL | KEY_SHIFT) + " pen5@7,9=65535 a ab");
}

TEST(QtFileDialogs, NamesFollowTheType) {
    EXPECT_EQ(NameFilterOf(g_Save.vFilters[1]), "JPEG (*.jpg *.jpeg)");
    EXPECT_EQ(ReplaceExtension("絵.vlm", g_Save, 1), "絵.jpg");
    EXPECT_EQ(ReplaceExtension("v1.2", g_Save, 1), "v1.2");
    EXPECT_EQ(CompleteName("v1.2", g_Save, 1), "v1.2.jpg");
    EXPECT_EQ(CompleteName("絵", g_Save, -1), "絵.vlm");
    EXPECT_EQ(CompleteName("絵.JPEG", g_Save, 0), "絵.JPEG");
}

TEST_F(CUiTest, SavingOverAFileIsConfirmedOnce) {
    QTemporaryDir dir;
    ASSERT_TRUE(QFile(dir.filePath("a.jpg")).open(QIODevice::WriteOnly));
    TFileDialog dialog = g_Save;
    dialog.strName = dir.filePath("a.vlm").toStdWString();
    Answer({[](QWidget& window) {
                auto& files = dynamic_cast<QFileDialog&>(window);
                files.findChild<QComboBox*>("fileTypeCombo")->setCurrentIndex(1);
                emit files.filterSelected(files.nameFilters()[1]);
                EXPECT_EQ(files.findChild<QLineEdit*>("fileNameEdit")->text(), "a.jpg");
            },
            Press(L"保存"), Press(L"いいえ"), Press(L"保存"), Press(L"はい"),
            [](QWidget& window) { window.close(); }});
    EXPECT_EQ(m_platform.GetPlatform().fileDialogs.Ask(m_pMain, dialog),
              dir.filePath("a.jpg").toStdWString());
    EXPECT_EQ(m_platform.GetPlatform().fileDialogs.Ask(m_pMain, dialog), L"");
}

TEST_F(CUiTest, AModalWindowThatIsDeletedWhileItIsOpenCountsAsCancelled) {
    const TPlatform& platform = m_platform.GetPlatform();
    const TStep remove = [](QWidget& window) { delete &window; };
    CLiveDialog model;
    Answer({remove});
    EXPECT_FALSE(platform.dialogs.Run(m_pMain, model));
    EXPECT_EQ(model.m_strHeard, "");
    Answer({remove});
    EXPECT_EQ(platform.boxes.Show(m_pMain, L"保存しますか？", L"", EBoxKind::YesNoCancelWarning),
              EBoxAnswer::Cancel);
    // The question whether a file is to be replaced.
    const QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("a.vlm")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    TFileDialog save = g_Save;
    save.strName = file.fileName().toStdWString();
    Answer({Press(L"保存"), remove, Press(L"キャンセル")});
    EXPECT_EQ(platform.fileDialogs.Ask(m_pMain, save), L"");
}
