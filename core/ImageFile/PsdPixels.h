// The pixels of a layered PSD file: planes of the whole canvas.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/ImageFile/PsdRecords.h"

#include <array>
#include <string>

/// The channels of a record with pixels in the order A, R, G, B: a compression word, the byte count of each
/// row in 16 bits, the packed rows. Straight alpha, without the layer's opacity; a grey layer repeats its
/// value in R, G and B. The canvas's flags must have been collected. A step of
/// `progress` for each row; raises cancelled_error.
std::array<std::string, 4> PackPsdChannels(const TPsdRecord& record, IProgress& progress);

/// Fills three planes of the canvas's size, R, G and B consecutively, initially white, with the picture
/// flattened on white. Raises cancelled_error.
void ResolvePsdPicture(CCanvasBuffer& canvas, uint8_t* pPlanes, IProgress& progress);
