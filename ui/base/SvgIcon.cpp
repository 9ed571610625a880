#include "ui/base/SvgIcon.h"

#include "core/Base/Resource.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include <memory>

namespace {

class CSvgIconEngine : public QIconEngine {
public:
    CSvgIconEngine(std::shared_ptr<QSvgRenderer> spRenderer, bool bLine)
        : m_spRenderer(std::move(spRenderer)), m_bLine(bLine) {}

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        m_spRenderer->render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
        if (m_bLine) {
            // The drawing is used as a mask, so that the icons stay readable in a host's dark palette.
            const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(image.rect(), QApplication::palette().color(group, QPalette::ButtonText));
        }
        painter.end();
        return QPixmap::fromImage(image);
    }

    void paint(QPainter* pPainter, const QRect& rc, QIcon::Mode mode, QIcon::State state) override {
        const qreal dScale = pPainter->device()->devicePixelRatioF();
        QPixmap pixmapIcon = pixmap((QSizeF(rc.size()) * dScale).toSize(), mode, state);
        pixmapIcon.setDevicePixelRatio(dScale);
        pPainter->drawPixmap(rc, pixmapIcon);
    }

    QIconEngine* clone() const override { return new CSvgIconEngine(*this); }

private:
    std::shared_ptr<QSvgRenderer> m_spRenderer;
    bool m_bLine;
};

QIcon LoadIcon(std::string_view strResource, bool bLine) {
    const std::string_view strBytes = FindResource(strResource);
    if (strBytes.empty()) return {};
    auto spRenderer = std::make_shared<QSvgRenderer>(
        QByteArray::fromRawData(strBytes.data(), static_cast<qsizetype>(strBytes.size())));
    if (!spRenderer->isValid()) return {};
    return QIcon(new CSvgIconEngine(std::move(spRenderer), bLine));
}

} // namespace

QIcon LoadLineIcon(std::string_view strResource) { return LoadIcon(strResource, true); }
QIcon LoadPictureIcon(std::string_view strResource) { return LoadIcon(strResource, false); }
