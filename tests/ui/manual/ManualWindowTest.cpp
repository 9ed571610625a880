#include "ui/manual/QtManualWindow.h"

#include "tests/support/TempFolder.h"
#include "tests/ui/UiTest.h"
#include "ui/base/QtText.h"
#include "ui/manual/QtManual.h"

namespace {

struct CManualWindow : CUiTest {
    CManualWindow() {
        Write("index.html", "<ol><li><a href=\"a.html\">一</a></li><li><a href=\"b.html\">二</a></li></ol>");
        Write("a.html",
              "<p>いろは</p><figure><div><img src=\"wide.png\"/></div><figcaption>図</figcaption></figure>"
              "<p>いろは</p>" +
                  QByteArray("<p>.</p>").repeated(60));
        Write("b.html", "<p>KEYS</p>");
        QImage image(2000, 400, QImage::Format_RGB32);
        EXPECT_TRUE(image.save(m_strFolder + "/wide.png"));
        EXPECT_TRUE(Open());
    }
    void Write(const QString& strName, const QByteArray& bytes) {
        QFile file(m_strFolder + "/" + strName);
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    }
    bool Open() {
        return m_manual.Show(*m_pMain,
                             {{{600, 500}, 100},
                              [this](std::string str) {
                                  ++m_nCompleted;
                                  return QString::fromStdString(str).replace("KEYS", "F3").toStdString();
                              },
                              [this](const TManualLook& look) { m_look = look; }});
    }
    static QWidget* Window() {
        for (QWidget* pWidget : QApplication::topLevelWidgets())
            if (dynamic_cast<CQtManualWindow*>(pWidget)) return pWidget;
        return nullptr;
    }
    template <class Widget>
    static Widget& Part() {
        return *dynamic_cast<Widget*>(Window()->findChildren<Widget*>().at(0));
    }
    static QTextBrowser& Page() { return Part<QTextBrowser>(); }

    CTempFolder m_folder;
    QString m_strFolder = ToQt(TextOf(m_folder.GetPath()));
    int m_nCompleted = 0;
    std::optional<TManualLook> m_look;
    CQtManual m_manual{m_strFolder};
};

TEST_F(CManualWindow, LeadsThroughThePages) {
    QListWidget& contents = Part<QListWidget>();
    ASSERT_EQ(contents.count(), 2);
    contents.setCurrentRow(0);
    EXPECT_TRUE(Page().toPlainText().startsWith("いろは"));
    Page().setSource(QUrl("b.html"));
    EXPECT_EQ(Page().toPlainText(), "F3");
    EXPECT_EQ(contents.currentRow(), 1);
    QTest::keyClick(&Page(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(contents.currentRow(), 0);
    QTest::keyClick(&Page(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(contents.currentRow(), -1) << "the first page stands not in the contents";
}

TEST_F(CManualWindow, FindsTextAndGoesOnAtTheBeginning) {
    Part<QListWidget>().setCurrentRow(0);
    auto& search = Part<QLineEdit>();
    search.insert("いろは");
    const int nFirst = Page().textCursor().selectionStart();
    EXPECT_EQ(Page().textCursor().selectedText(), "いろは");
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_GT(Page().textCursor().selectionStart(), nFirst);
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_EQ(Page().textCursor().selectionStart(), nFirst);
    const auto told = [] { return Window()->findChildren<QLabel*>().at(0)->text(); };
    EXPECT_EQ(told(), "");
    search.insert("に");
    EXPECT_EQ(told(), "見つかりません");
    EXPECT_FALSE(Page().textCursor().hasSelection());
}

TEST_F(CManualWindow, PicturesFollowTheWidth) {
    Part<QListWidget>().setCurrentRow(0);
    const auto width = [] { return qRound(Page().document()->idealWidth()); };
    QTest::qWait(400);
    const int nLoaded = m_nCompleted;
    QTest::qWait(400);
    EXPECT_EQ(m_nCompleted, nLoaded) << "it must not load the page again and again";
    const int nBefore = width();
    EXPECT_LE(nBefore, Page().viewport()->width());
    Window()->resize(Window()->width() + 200, 500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return width() == nBefore + 200; }, 1000)) << width();
}

TEST_F(CManualWindow, IsOneWindowAndReportsItsLook) {
    QWidget* const pWindow = Window();
    EXPECT_TRUE(Open());
    EXPECT_EQ(Window(), pWindow);
    const qreal dBefore = Page().document()->defaultFont().pointSizeF();
    for (QAction* pAction : pWindow->actions())
        if (pAction->text() == "大きく") pAction->trigger();
    EXPECT_GT(Page().document()->defaultFont().pointSizeF(), dBefore);
    pWindow->close();
    ASSERT_TRUE(m_look);
    EXPECT_TRUE(m_look->sz == CSize(600, 500) && m_look->nZoom == 110);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Window(), nullptr);
    m_manual.Close();
    EXPECT_FALSE(CQtManual({}).Show(*m_pMain, {}));
}

} // namespace
