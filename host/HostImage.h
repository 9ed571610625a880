// Interface to the picture of a host: all that a session needs to know about its host. A new kind of host
// implements only this.
#pragma once

#include "core/Base/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Channel types, by the published numbers. The exchange knows these four; a host may list others.
enum EHostChannelType : int {
    ctRed = 1,
    ctGreen = 2,
    ctBlue = 3,
    ctTransparency = 16,
};

/// A channel of the host's picture.
struct THostChannel {
    int nType = 0;  ///< EHostChannelType or any other number
    size_t uId = 0; ///< the host's own identifier
};

/// Pixels in memory. `pData` is the address of the rectangle's top-left pixel; the pixel at (x, y) from
/// there starts at bit `nBitOffset + y * nRowBits + x * nColBits` and has `nDepth` bits, always 8 here.
struct TPixelMemory {
    uint8_t* pData = nullptr;
    int32_t nRowBits = 0;
    int32_t nColBits = 0;
    int32_t nBitOffset = 0;
    int32_t nDepth = 8;
};

/// One picture for one session, on the session's thread. Rectangles are in the host's coordinates, in which
/// the picture may start anywhere. No call throws; a read or write that the host refuses leaves its target
/// unchanged and is not reported.
class IHostImage {
public:
    virtual ~IHostImage() = default;
    /// The rectangle of the picture. Called before Open.
    virtual CRect GetRect() = 0;
    /// The channels in the order in which they are read and written: colour, further channels,
    /// transparency. Called before Open; a later entry may overwrite the pixels of an earlier one.
    virtual std::vector<THostChannel> GetChannels() = 0;
    /// Prepares for reading and writing. Returns false when the host lacks what that needs; then neither is
    /// called.
    virtual bool Open() = 0;
    /// Reads a rectangle of a channel into memory.
    virtual void Read(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) = 0;
    /// Writes a rectangle of memory to a channel; skips a channel that cannot be written.
    virtual void Write(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) = 0;
};
