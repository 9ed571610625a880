// Conversion between the application's texts and rectangles and Qt's.
#pragma once

#include "core/Base/Geometry.h"

#include <QRect>
#include <QString>

#include <string>

inline QString ToQt(const std::wstring& str) { return QString::fromStdWString(str); }
inline std::wstring FromQt(const QString& str) { return str.toStdWString(); }

/// The placeholder for the modified mark in a window title.
inline const QString TITLE_MARK = QStringLiteral("[*]");

/// A window's title with the placeholder for the modified mark; the same characters in the text are
/// escaped.
inline QString MarkableTitle(const std::wstring& strTitle) {
    return ToQt(strTitle).replace(TITLE_MARK, TITLE_MARK + TITLE_MARK) + TITLE_MARK;
}

inline QRect ToQt(const CRect& rc) { return {rc.left, rc.top, rc.Width(), rc.Height()}; }
inline CRect FromQt(const QRect& rc) {
    return {rc.left(), rc.top(), rc.left() + rc.width(), rc.top() + rc.height()};
}
