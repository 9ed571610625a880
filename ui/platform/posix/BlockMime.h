// A copied block in the forms that other programs read.
#pragma once

#include "core/Platform/System.h"

#include <QMimeData>

/// Encodes a form when a program asks for it. The clipboard owns it, also when the session has ended.
class CBlockMime : public QMimeData {
public:
    explicit CBlockMime(const TDibBytes& spBlock) : m_spBlock(spBlock) {}

    const TDibBytes& GetBlock() const { return m_spBlock; }
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& strMime, QMetaType type) const override;

private:
    const TDibBytes m_spBlock;
    mutable QByteArray m_png; ///< programs often ask twice
};
