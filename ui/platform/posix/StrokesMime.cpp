#include "ui/platform/posix/StrokesMime.h"

#include <QStringList>

#include <new>

namespace {

const QLatin1String SVG("image/svg+xml");

} // namespace

QStringList CStrokesMime::formats() const {
    QStringList formats{STROKES_MIME, SVG};
    if (GetBlock()) formats += CBlockMime::formats();
    return formats;
}

QVariant CStrokesMime::retrieveData(const QString& strMime, QMetaType type) const try {
    if (strMime == STROKES_MIME) return QByteArray::fromStdString(*m_forms.spStrokes);
    if (strMime == SVG) return QByteArray::fromStdString(m_forms.strSvg);
    return GetBlock() ? CBlockMime::retrieveData(strMime, type) : QVariant();
} catch (const std::bad_alloc&) {
    return {}; // Qt calls this and must not be unwound
}
