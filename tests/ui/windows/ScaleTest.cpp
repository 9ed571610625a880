#include "tests/ui/UiTest.h"

#include "core/Platform/Pen.h"
#include "tests/support/LiveDialog.h"
#include "ui/base/SvgIcon.h"

// The scale is fixed when the process starts.
TEST(QtScale, PointerPenAndPaintAreInDevicePixelsOnBothAxes) {
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("1.5"));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(),
                {"--gtest_also_run_disabled_tests", "--gtest_filter=*DISABLED_AtOneAndAHalf"});
    ASSERT_TRUE(child.waitForFinished(60000));
    const QByteArray output = child.readAllStandardOutput();
    EXPECT_TRUE(child.exitCode() == 0 && output.contains("[  PASSED  ] 1 test")) << output.toStdString();
}

TEST_F(CUiTest, DISABLED_AtOneAndAHalf) {
    ICanvasWindow* pCanvas = Open(m_a);
    QWidget& glass = *ViewOf(pCanvas).viewport();
    ASSERT_EQ(glass.devicePixelRatioF(), 1.5);
    EXPECT_EQ(pCanvas->GetDpi(), 144);
    QTest::mousePress(&glass, Qt::LeftButton, {}, {7, 21});
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::LButtonDown), (TParams{{MOUSE_LEFT, PackPoint(10, 31)}}));
    const QPointingDevice pen = MakePen();
    SendPen(glass, pen, {7.25, 21.5}, 0.5);
    TPenPacket packet;
    ASSERT_EQ(m_platform.GetPlatform().pen.GetPackets(&packet, 1), 1u);
    const QPoint ptGlass = glass.mapToGlobal(QPoint(0, 0));
    EXPECT_EQ((CPoint{packet.x, packet.y}), (CPoint{ptGlass.x() * 48 + 348, ptGlass.y() * 48 + 1032}));
    m_a.m_vPainted.clear();
    pCanvas->Invalidate({20, 30, 26, 40}); // Qt's pixels 13 to 18 and 20 to 27
    Turn();
    EXPECT_EQ(m_a.m_vPainted, (std::vector<CRect>{{19, 30, 27, 41}}));

    // An icon is drawn at the glass's resolution, not enlarged.
    const QIcon icon = LoadLineIcon("icons/tool-brush.svg");
    QImage image(36, 36, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1.5);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon.paint(&painter, QRect(0, 0, 24, 24));
    painter.end();
    image.setDevicePixelRatio(1);
    EXPECT_EQ(image, icon.pixmap({36, 36}, 1.0).toImage());

    CLiveDialog dialog;
    QTimer::singleShot(50, [] {
        for (QWidget* pChild : QApplication::activeModalWidget()->findChildren<QWidget*>())
            if (pChild->height() == 30 && pChild->focusPolicy() == Qt::TabFocus)
                QTest::mousePress(pChild, Qt::LeftButton, {}, {5, 7});
    });
    QTimer::singleShot(150, [] {
        QApplication::activeModalWidget()->findChild<QDialogButtonBox*>()->buttons().front()->click();
    });
    EXPECT_TRUE(m_platform.GetPlatform().dialogs.Run(m_pMain, dialog));
    EXPECT_EQ(dialog.m_strHeard, " 4down7,10 ok");
}
