#include "ui/windows/CanvasCursor.h"

#include <QPixmap>

#include <gtest/gtest.h>

TEST(CanvasCursor, ShapesOfOurOwnAreDrawnForTheScreen) {
    for (const ECursor cursor :
         {ECursor::Select, ECursor::Move, ECursor::Add, ECursor::Remove, ECursor::Join, ECursor::Width}) {
        const QCursor shape = CanvasCursor(cursor, 2);
        EXPECT_EQ(shape.pixmap().size(), QSize(64, 64)) << static_cast<int>(cursor);
        EXPECT_EQ(shape.pixmap().devicePixelRatio(), 2);
        const QImage image = shape.pixmap().toImage();
        EXPECT_EQ(image.pixelColor(63, 0).alpha(), 0);
        const bool bCross = cursor == ECursor::Add || cursor == ECursor::Width;
        const QPoint ptHot = CanvasCursor(cursor, 1).hotSpot() * 2;
        EXPECT_EQ(ptHot, bCross ? QPoint(22, 22) : QPoint(4, 4));
        // An arrow's tip is at the hot spot; a cross leaves it free.
        EXPECT_EQ(image.pixelColor(ptHot + QPoint(1, 3)).alpha() > 200, !bCross);
    }
    EXPECT_EQ(CanvasCursor(ECursor::Hand, 2).shape(), Qt::OpenHandCursor);
}
