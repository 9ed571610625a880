// Copied strokes in the forms that programs read.
#pragma once

#include "ui/platform/posix/BlockMime.h"

#include <QLatin1String>

/// The application's own form.
inline constexpr QLatin1String STROKES_MIME("application/x-vellumcraft-strokes");

/// The strokes, SVG, and the picture where there is one.
class CStrokesMime : public CBlockMime {
public:
    explicit CStrokesMime(const TStrokeForms& forms) : CBlockMime(forms.spPicture), m_forms(forms) {}

    const TStrokeBytes& GetStrokes() const { return m_forms.spStrokes; }
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& strMime, QMetaType type) const override;

private:
    const TStrokeForms m_forms;
};
