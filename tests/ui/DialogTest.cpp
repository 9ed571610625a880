#include "UiTest.h"

#include "ui/QtFileDialogs.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTimer>

namespace {

/// Runs the steps one after the other, each once a (new) modal window is open.
void Answer(std::vector<std::function<void(QWidget&)>> vSteps) {
    if (vSteps.empty()) return;
    QTimer::singleShot(20, qApp, [vSteps]() mutable {
        QWidget* pModal = QApplication::activeModalWidget();
        const auto step = vSteps.front();
        if (pModal) vSteps.erase(vSteps.begin());
        Answer(vSteps);
        if (pModal) step(*pModal);
    });
}

/// A step that presses the button whose text starts so.
std::function<void(QWidget&)> Press(const wchar_t* pszText) {
    return [strText = QString::fromWCharArray(pszText)](QWidget& window) {
        for (QAbstractButton* pButton : window.findChildren<QAbstractButton*>())
            if (pButton->text().startsWith(strText)) return pButton->click();
        ADD_FAILURE() << "no button " << strText.toStdString();
        window.close();
    };
}

class CSizeModel : public CDialogModel {
public:
    CSizeModel() {
        m_vFields = {{TDialogField::EKind::Integer, "width", L"幅", L"800", 1, 12000, false},
                     {TDialogField::EKind::Check, "grey", L"グレー", L"", 0, 0, false},
                     {TDialogField::EKind::Report, "report", L"", L"前", 0, 0, false}};
    }
    const char* GetName() const override { return "CSizeModel"; }
    std::wstring GetTitle() const override { return L"新規作成"; }
    std::wstring GetExtraButton() const override { return L"コピー"; }
    void OnExtra() override { m_vFields[2].strText = L"後"; }
    bool OnOk(IWindow*) override {
        m_vSeen.push_back(m_vFields[0].strText);
        if (m_vFields[0].strText == L"640") return true;
        m_vFields[0].strText = L"801";
        return false;
    }
    std::vector<std::wstring> m_vSeen;
};

const TFileDialog g_Save{
    true,
    L"",
    L"vlm",
    {{L"Vellumcraft File (*.vlm)", L"*.vlm"}, {L"JPEG ファイル (*.jpg;*.jpeg)", L"*.jpg;*.jpeg"}}};

} // namespace

TEST_F(CUiTest, BoxesAnswer) {
    IMessageBoxes& boxes = m_platform.GetPlatform().boxes;
    const auto ask = [&](std::function<void(QWidget&)> step) {
        Answer({std::move(step)});
        return boxes.Show(m_pMain, L"保存しますか？", L"Vellumcraft", EBoxKind::YesNoCancelWarning);
    };
    EXPECT_EQ(ask(Press(L"はい")), EBoxAnswer::Yes);
    EXPECT_EQ(ask(Press(L"いいえ")), EBoxAnswer::No);
    EXPECT_EQ(ask(Press(L"キャンセル")), EBoxAnswer::Cancel);
    EXPECT_EQ(ask([](QWidget& box) { box.close(); }), EBoxAnswer::Cancel);
    Answer({[this](QWidget& box) {
        EXPECT_EQ(box.parentWidget(), &GetWidget());
        EXPECT_EQ(box.windowModality(), Qt::WindowModal);
        box.close();
    }});
    EXPECT_EQ(boxes.Show(m_pMain, L"<b>", L"Vellumcraft - Error", EBoxKind::Error), EBoxAnswer::Ok);
}

TEST_F(CUiTest, TheModelJudgesWhatWasTyped) {
    CSizeModel model;
    Answer({[](QWidget& dialog) {
                auto* pEdit = dialog.findChild<QLineEdit*>();
                pEdit->setText("abc");
                dialog.findChild<QCheckBox*>()->click();
            },
            Press(L"OK"),
            [](QWidget& dialog) {
                auto* pEdit = dialog.findChild<QLineEdit*>();
                EXPECT_EQ(pEdit->text(), "801");
                QTest::keyClick(pEdit, Qt::Key_Up);
                EXPECT_EQ(pEdit->text(), "802");
                pEdit->setText("640");
            },
            Press(L"コピー"),
            [](QWidget& dialog) {
                EXPECT_EQ(dialog.findChild<QPlainTextEdit*>()->toPlainText(), QString::fromWCharArray(L"後"));
                EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), "640");
            },
            Press(L"OK")});
    EXPECT_TRUE(m_platform.GetPlatform().dialogs.Run(m_pMain, model));
    EXPECT_EQ(model.m_vSeen, (std::vector<std::wstring>{L"abc", L"640"}));
    EXPECT_TRUE(model.m_vFields[1].bChecked);
    Answer({[](QWidget& dialog) { dialog.close(); }});
    EXPECT_FALSE(m_platform.GetPlatform().dialogs.Run(m_pMain, model));
}

TEST(QtFileDialogs, NamesFollowTheType) {
    EXPECT_EQ(NameFilterOf(g_Save.vFilters[1]), "JPEG ファイル (*.jpg *.jpeg)");
    EXPECT_EQ(ReplaceExtension("絵.vlm", g_Save, 1), "絵.jpg");
    EXPECT_EQ(ReplaceExtension("v1.2", g_Save, 1), "v1.2");
    EXPECT_EQ(ReplaceExtension("絵", g_Save, 1), "絵");
    EXPECT_EQ(CompleteName("絵", g_Save, 1), "絵.jpg");
    EXPECT_EQ(CompleteName("絵", g_Save, -1), "絵.vlm");
    EXPECT_EQ(CompleteName("絵.JPEG", g_Save, 0), "絵.JPEG");
    EXPECT_EQ(CompleteName("v1.2", g_Save, 0), "v1.2.vlm");
}

TEST_F(CUiTest, SavingOverAFileIsConfirmedOnce) {
    QTemporaryDir dir;
    QFile file(dir.filePath("a.jpg"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    TFileDialog dialog = g_Save;
    dialog.strName = dir.filePath("a.vlm").toStdWString();
    Answer({[](QWidget& window) {
                auto& files = dynamic_cast<QFileDialog&>(window);
                files.findChild<QComboBox*>("fileTypeCombo")->setCurrentIndex(1);
                emit files.filterSelected(files.nameFilters()[1]);
                EXPECT_EQ(files.findChild<QLineEdit*>("fileNameEdit")->text(), "a.jpg");
            },
            Press(L"保存"), Press(L"いいえ"), Press(L"保存"), Press(L"はい")});
    EXPECT_EQ(m_platform.GetPlatform().fileDialogs.Ask(m_pMain, dialog),
              dir.filePath("a.jpg").toStdWString());
    Answer({[](QWidget& window) { window.close(); }});
    EXPECT_EQ(m_platform.GetPlatform().fileDialogs.Ask(m_pMain, dialog), L"");
}

TEST_F(CUiTest, ClipboardTakesText) {
    m_platform.GetClipboard().SetText(L"版: 1.0\r\n");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromWCharArray(L"版: 1.0\r\n"));
}
