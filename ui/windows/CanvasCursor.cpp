#include "ui/windows/CanvasCursor.h"

#include "ui/base/SvgIcon.h"

#include <QGuiApplication>
#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace {

constexpr int SIDE = 32; ///< pixels at scale 1, of the drawings too

struct TDrawnCursor {
    ECursor cursor;
    const char* pszIcon;
    int nHot; ///< both coordinates of the hot spot in the drawing: an arrow's tip or a cross's middle
};

constexpr int TIP = 2, MIDDLE = 11;

constexpr TDrawnCursor DRAWN[] = {
    {ECursor::Select, "icons/cursor-select.svg", TIP}, {ECursor::Move, "icons/cursor-move.svg", TIP},
    {ECursor::Add, "icons/cursor-add.svg", MIDDLE},    {ECursor::Remove, "icons/cursor-remove.svg", TIP},
    {ECursor::Join, "icons/cursor-join.svg", TIP},     {ECursor::Width, "icons/cursor-width.svg", MIDDLE},
};

Qt::CursorShape ShapeOf(ECursor cursor) {
    switch (cursor) {
    case ECursor::Forbidden:
        return Qt::ForbiddenCursor;
    case ECursor::Cross:
        return Qt::CrossCursor;
    case ECursor::Hand:
        return Qt::OpenHandCursor;
    case ECursor::HandGrip:
        return Qt::ClosedHandCursor;
    default:
        return Qt::ArrowCursor;
    }
}

} // namespace

QCursor CanvasCursor(ECursor cursor, qreal dScale) {
    const auto* pDrawn = std::ranges::find(DRAWN, cursor, &TDrawnCursor::cursor);
    if (pDrawn == std::end(DRAWN)) return ShapeOf(cursor);
    QPixmap pixmap = LoadPictureIcon(pDrawn->pszIcon).pixmap(QSize(SIDE, SIDE), dScale);
    pixmap.setDevicePixelRatio(dScale);
    // Qt's X plugin takes the hot spot in the picture's own pixels, others scale it with the picture.
    const int nHot = QGuiApplication::platformName() == QLatin1String("xcb")
                         ? static_cast<int>(std::lround(pDrawn->nHot * dScale))
                         : pDrawn->nHot;
    return QCursor(pixmap, nHot, nHot);
}
