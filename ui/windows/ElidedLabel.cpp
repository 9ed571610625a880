#include "ui/windows/ElidedLabel.h"

#include <QEvent>
#include <QPainter>

void CElidedLabel::paintEvent(QPaintEvent*) {
    const QRect rc = contentsRect();
    QPainter(this).drawText(rc, Qt::AlignLeft | Qt::AlignVCenter,
                            fontMetrics().elidedText(text(), Qt::ElideRight, rc.width()));
}

bool CElidedLabel::event(QEvent* pEvent) {
    if (pEvent->type() == QEvent::ToolTip)
        setToolTip(fontMetrics().horizontalAdvance(text()) > contentsRect().width() ? text() : QString());
    return QLabel::event(pEvent);
}
