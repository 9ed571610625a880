// Reduction of a picture's colours to at most 256.
#pragma once

#include <QImage>

class IProgress;

/// Returns an indexed copy of an opaque Format_RGB32 picture. Up to 256 colours are kept exactly; more are
/// reduced by median cut with error diffusion. Raises std::bad_alloc and cancelled_error.
QImage QuantizeColors(const QImage& image, IProgress& progress);
