// The widgets' style.
#pragma once

#include <QProxyStyle>

/// Fusion, with line icons on title bars: Fusion's own are bitmaps, which scales blur and dark palettes hide.
class CQtStyle : public QProxyStyle {
public:
    CQtStyle();
    QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* pOption,
                       const QWidget* pWidget) const override;
    /// Tabs with less room beside their text, so that three stand above a narrow panel.
    int pixelMetric(PixelMetric metric, const QStyleOption* pOption, const QWidget* pWidget) const override;
    /// No pictures on the buttons of dialogs.
    int styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* pOption, QPainter* pPainter,
                       const QWidget* pWidget) const override;
};
