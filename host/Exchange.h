// Copies pixels between a raster plane and the host's channels, block by block.
#pragma once

#include "host/HostImage.h"

class CRasterBuffer;

/// Fills the plane from the host's picture, whose corner (`nLeft`, `nTop`) becomes the plane's. Pixels are
/// opaque without a transparency channel. A channel of an unknown type is read into the same place as the
/// channel before it in the list; it is skipped when there is none. Raises internal_error when a bitmap
/// cannot be created.
void ReadHostChannels(CRasterBuffer& plane, const std::vector<THostChannel>& lstHostChannels,
                      IHostImage& host, int32_t nLeft, int32_t nTop);

/// Writes the plane's whole extent to the host without composing. Without a transparency channel the pixels
/// are first drawn on white, by the screen's formula. A channel of an unknown type receives the same bytes
/// as the channel before it in the list.
void WriteHostChannels(const std::vector<THostChannel>& lstHostChannels, CRasterBuffer& plane,
                       IHostImage& host, int32_t nLeft, int32_t nTop);
