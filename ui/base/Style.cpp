#include "ui/base/Style.h"

#include "ui/base/SvgIcon.h"

#include <QPainter>
#include <QStyleOption>

#include <new>

namespace {

constexpr int TAB_CLOSE = 10;
constexpr int TAB_SPACE = 14;

// Qt asks for icons from constructors, which no exception may leave.
QIcon LoadStyleIcon(std::string_view strResource) {
    try {
        return LoadLineIcon(strResource);
    } catch (const std::bad_alloc&) {
        return {};
    }
}

} // namespace

CQtStyle::CQtStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

QIcon CQtStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* pOption,
                             const QWidget* pWidget) const {
    switch (pixmap) {
    case SP_TitleBarNormalButton:
        return LoadStyleIcon("icons/title-normal.svg");
    case SP_TitleBarCloseButton:
    case SP_DockWidgetCloseButton:
        return LoadStyleIcon("icons/title-close.svg");
    case SP_TitleBarMinButton:
        return LoadStyleIcon("icons/title-min.svg");
    case SP_TitleBarMaxButton:
        return LoadStyleIcon("icons/title-max.svg");
    default:
        return QProxyStyle::standardIcon(pixmap, pOption, pWidget);
    }
}

void CQtStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* pOption, QPainter* pPainter,
                             const QWidget* pWidget) const {
    if (element != PE_IndicatorTabClose)
        return QProxyStyle::drawPrimitive(element, pOption, pPainter, pWidget);
    if (pOption->state.testFlag(State_MouseOver))
        pPainter->fillRect(pOption->rect, pOption->palette.color(QPalette::Midlight));
    QRect rcIcon(0, 0, TAB_CLOSE, TAB_CLOSE);
    rcIcon.moveCenter(pOption->rect.center());
    LoadStyleIcon("icons/title-close.svg").paint(pPainter, rcIcon);
}

int CQtStyle::pixelMetric(PixelMetric metric, const QStyleOption* pOption, const QWidget* pWidget) const {
    return metric == PM_TabBarTabHSpace ? TAB_SPACE : QProxyStyle::pixelMetric(metric, pOption, pWidget);
}

int CQtStyle::styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                        QStyleHintReturn* pReturn) const {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons
               ? 0
               : QProxyStyle::styleHint(hint, pOption, pWidget, pReturn);
}
