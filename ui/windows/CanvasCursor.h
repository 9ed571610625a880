// The pointer's shapes over a canvas.
#pragma once

#include "core/Platform/Cursor.h"

#include <QCursor>

/// A shape of the desktop, or one of our own, drawn for a screen of `dScale` device pixels to a pixel.
QCursor CanvasCursor(ECursor cursor, qreal dScale);
