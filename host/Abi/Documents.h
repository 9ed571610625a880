// A host's description of its document and the document's channels. Natural alignment.
#pragma once

#include "host/Abi/Types.h"

#include <cstddef>

namespace hostabi {

/// Opaque handle that a channel is read from or written to.
using ChannelPort = void*;

/// One channel; lists are linked by `next`. Fields from `writePort` on exist from the stated version on.
struct ReadChannelDesc {
    int32_t minVersion;
    int32_t maxVersion;
    ReadChannelDesc* next;
    ChannelPort port;
    VRect bounds;
    int32_t depth;
    VPoint tileSize;
    VPoint tileOrigin;
    Boolean target;
    Boolean shown;
    int16_t channelType;
    void* contextInfo;
    const char* name;
    ChannelPort writePort;       // version 1
    uint32_t alphaID;            // version 2
    const uint16_t* unicodeName; // version 3
    Boolean isEnabled;           // version 4
    VRect limitBounds;           // version 5
};
static_assert(offsetof(ReadChannelDesc, maxVersion) == 4);
static_assert(offsetof(ReadChannelDesc, next) == 8);
static_assert(offsetof(ReadChannelDesc, port) == 16);
static_assert(offsetof(ReadChannelDesc, bounds) == 24);
static_assert(offsetof(ReadChannelDesc, channelType) == 62);
static_assert(offsetof(ReadChannelDesc, name) == 72);
static_assert(offsetof(ReadChannelDesc, writePort) == 80);
static_assert(offsetof(ReadChannelDesc, limitBounds) == 108);
static_assert(sizeof(ReadChannelDesc) == 128);

/// The document. Fields from `fileSpec` on exist only from the stated version on.
struct ReadImageDocumentDesc {
    int32_t minVersion;
    int32_t maxVersion;
    int32_t imageMode;
    int32_t depth;
    VRect bounds;
    Fixed hResolution;
    Fixed vResolution;
    uint8_t redLUT[256];
    uint8_t greenLUT[256];
    uint8_t blueLUT[256];
    ReadChannelDesc* targetCompositeChannels;
    ReadChannelDesc* targetTransparency;
    ReadChannelDesc* targetLayerMask;
    ReadChannelDesc* mergedCompositeChannels;
    ReadChannelDesc* mergedTransparency;
    ReadChannelDesc* alphaChannels;
    ReadChannelDesc* selection;
    void* fileSpec;         // version 1
    void* layersDescriptor; // version 2
    int32_t documentType;
    ReadImageDocumentDesc* next;
    char* iCCprofileData; // version 3
    int32_t iCCprofileSize;
    int32_t compositeChannelCount;
    int32_t layerCount;
    int32_t alphaChannelCount;
    ReadChannelDesc* targetSmartFilterMask; // version 4
    void* fileSpecW;                        // version 5
    void* fileSpecX;                        // version 6
};
static_assert(offsetof(ReadImageDocumentDesc, imageMode) == 8);
static_assert(offsetof(ReadImageDocumentDesc, bounds) == 16);
static_assert(offsetof(ReadImageDocumentDesc, targetCompositeChannels) == 808);
static_assert(offsetof(ReadImageDocumentDesc, targetTransparency) == 816);
static_assert(offsetof(ReadImageDocumentDesc, alphaChannels) == 848);
static_assert(offsetof(ReadImageDocumentDesc, targetSmartFilterMask) == 920);
static_assert(sizeof(ReadImageDocumentDesc) == 944);

/// Pixels in memory: `data` is the pixel at the rectangle's top-left corner, strides are in bits.
struct PixelMemoryDesc {
    void* data;
    int32_t rowBits;
    int32_t colBits;
    int32_t bitOffset;
    int32_t depth;
};
static_assert(offsetof(PixelMemoryDesc, rowBits) == 8);
static_assert(offsetof(PixelMemoryDesc, colBits) == 12);
static_assert(offsetof(PixelMemoryDesc, bitOffset) == 16);
static_assert(offsetof(PixelMemoryDesc, depth) == 20);
static_assert(sizeof(PixelMemoryDesc) == 24);

} // namespace hostabi
