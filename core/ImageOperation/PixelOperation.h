// Operations that change each pixel by itself: on a layer under the selection, and on the pixels of a
// preview.
#pragma once

#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/RasterKernel/HsbKernel.h"
#include "core/RasterKernel/LevelKernel.h"

#include <boost/function.hpp>

#include <array>
#include <string>

class CSelectBuffer;

/// The planes of flat pixels, by the bit that stands for a channel.
constexpr size_t CHANNEL_ALPHA = 0, CHANNEL_BLUE = 1, CHANNEL_GREEN = 2, CHANNEL_RED = 3;
constexpr size_t CHANNEL_GREY = CHANNEL_BLUE;
constexpr size_t GREY_CHANNELS = 2, COLOR_CHANNELS = 4;

struct TFlatPixels {
    std::array<uint8_t*, COLOR_CHANNELS> apPlanes{}; ///< null for channels that the kind does not have
    const uint8_t* pMask = nullptr; ///< the part of each pixel that changes, 0 to 255; null for all
    size_t nCount = 0;

    bool IsColor() const { return apPlanes[CHANNEL_RED] != nullptr; }
};

/// The channels of a colour or grey plane; raises internal_error for any other.
size_t ChannelsOf(const CRasterBuffer& plane);
/// The planes of a colour or grey tile; raises internal_error for any other.
TFlatPixels FlatPixelsOf(CRasterBlockBuffer& tile, const uint8_t* pMask);

/// Changes pixels in place. Called by several threads at once.
using TPixelOperation = boost::function<void(const TFlatPixels& pixels)>;

/// The level correction of the channels whose bits are set.
TPixelOperation LevelOperation(const TLevelTable& table, uint32_t uChannels);
/// Hue, saturation and brightness.
TPixelOperation HsbOperation(const THsbValues& values);

/// Changes a layer's pixels, those under the canvas's selection if there is one, by an undoable action of
/// that label. Complete strokes and floating pixels must have been merged. Missing tiles stay missing. False
/// when no pixel changes. Raises cancelled_error, after which nothing has changed.
bool ChangePixels(const boost::shared_ptr<CRasterLayerBuffer>& spLayer, const TPixelOperation& fnOperation,
                  std::wstring strLabel, IProgress& progress = NoProgress());
