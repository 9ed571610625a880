// A label that shortens its text where there is no room.
#pragma once

#include <QLabel>

/// Its text ends with an ellipsis where there is no room; the tool tip has it whole.
class CElidedLabel : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    bool event(QEvent* pEvent) override;
};
