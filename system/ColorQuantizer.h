// From any number of colours to 256.
#pragma once

#include <QImage>

/// An indexed picture of an opaque Format_RGB32 one. Up to 256 colours are kept exactly; more are reduced by
/// median cut and the rest spread by error diffusion. Throws std::bad_alloc.
QImage QuantizeColors(const QImage& image);
