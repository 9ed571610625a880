// Pixels between a raster plane and the host's channels, block by block.
#pragma once

#include "host/HostImage.h"

class CRasterBuffer;

/// Fills the plane from the host's picture whose corner (`nLeft`, `nTop`) is the plane's. Pixels are opaque
/// unless a transparency channel says otherwise. A channel of an unknown type goes where the channel before
/// it in the list went; one with none before it is not read. Raises internal_error when a bitmap that is
/// needed on the way cannot be had.
void ReadHostChannels(CRasterBuffer& plane, const std::vector<THostChannel>& lstHostChannels,
                      IHostImage& host, int32_t nLeft, int32_t nTop);

/// The opposite: writes the plane's whole present extent. Nothing is composed here. Without a transparency
/// channel the pixels are laid on white first, by the screen's formula. Channels of unknown type receive what
/// the channel before them in the list received.
void WriteHostChannels(const std::vector<THostChannel>& lstHostChannels, CRasterBuffer& plane,
                       IHostImage& host, int32_t nLeft, int32_t nTop);
