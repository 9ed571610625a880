// Between the application's texts and rectangles and Qt's.
#pragma once

#include "core/Base/Geometry.h"

#include <QRect>
#include <QString>

#include <string>

inline QString ToQt(const std::wstring& str) { return QString::fromStdWString(str); }
inline std::wstring FromQt(const QString& str) { return str.toStdWString(); }

inline QRect ToQt(const CRect& rc) { return {rc.left, rc.top, rc.Width(), rc.Height()}; }
inline CRect FromQt(const QRect& rc) {
    return {rc.left(), rc.top(), rc.left() + rc.width(), rc.top() + rc.height()};
}
