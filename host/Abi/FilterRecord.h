// The records that are passed with a selector.
#pragma once

#include "host/Abi/Suites.h"

#include <cstddef>

namespace hostabi {

/// Passed with About; nothing else may be read then. Natural alignment.
struct AboutRecord {
    void* platformData; ///< points to one window handle
    SPBasicSuite* sSPBasic;
    void* plugInRef;
    char reserved[244];
};
static_assert(sizeof(AboutRecord) == 272);

// Packed to 4 on every width, unlike all other records; the packing is unconditional.
#pragma pack(push, 4)

/// Passed with every other selector. The session reads filterRect, documentInfo and sSPBasic; a host passes
/// all 608 bytes.
struct FilterRecord {
    int32_t serialNumber;
    Boolean (*abortProc)();
    void (*progressProc)(int32_t done, int32_t total);
    Handle parameters;
    Point imageSize;
    int16_t planes;
    Rect filterRect;
    RGBColor background;
    RGBColor foreground;
    int32_t maxSpace;
    int32_t bufferSpace;
    Rect inRect;
    int16_t inLoPlane;
    int16_t inHiPlane;
    Rect outRect;
    int16_t outLoPlane;
    int16_t outHiPlane;
    void* inData;
    int32_t inRowBytes;
    void* outData;
    int32_t outRowBytes;
    Boolean isFloating;
    Boolean haveMask;
    Boolean autoMask;
    Rect maskRect;
    void* maskData;
    int32_t maskRowBytes;
    FilterColor backColor;
    FilterColor foreColor;
    OSType hostSig;
    void* hostProc;
    int16_t imageMode;
    Fixed imageHRes;
    Fixed imageVRes;
    Point floatCoord;
    Point wholeSize;
    Fixed monitor[10];
    void* platformData;
    void* bufferProcs;
    void* resourceProcs;
    void* processEvent;
    void* displayPixels;
    void* handleProcs;
    Boolean supportsDummyChannels;
    Boolean supportsAlternateLayouts;
    int16_t wantLayout;
    int16_t filterCase;
    int16_t dummyPlaneValue;
    void* premiereHook;
    void* advanceState;
    Boolean supportsAbsolute;
    Boolean wantsAbsolute;
    void* getPropertyObsolete;
    Boolean cannotUndo;
    Boolean supportsPadding;
    int16_t inputPadding;
    int16_t outputPadding;
    int16_t maskPadding;
    Boolean samplingSupport;
    Boolean reservedByte;
    Fixed inputRate;
    Fixed maskRate;
    void* colorServices;
    int16_t inLayerPlanes;
    int16_t inTransparencyMask;
    int16_t inLayerMasks;
    int16_t inInvertedLayerMasks;
    int16_t inNonLayerPlanes;
    int16_t outLayerPlanes;
    int16_t outTransparencyMask;
    int16_t outLayerMasks;
    int16_t outInvertedLayerMasks;
    int16_t outNonLayerPlanes;
    int16_t absLayerPlanes;
    int16_t absTransparencyMask;
    int16_t absLayerMasks;
    int16_t absInvertedLayerMasks;
    int16_t absNonLayerPlanes;
    int16_t inPreDummyPlanes;
    int16_t inPostDummyPlanes;
    int16_t outPreDummyPlanes;
    int16_t outPostDummyPlanes;
    int32_t inColumnBytes;
    int32_t inPlaneBytes;
    int32_t outColumnBytes;
    int32_t outPlaneBytes;
    void* imageServicesProcs;
    void* propertyProcs;
    int16_t inTileHeight;
    int16_t inTileWidth;
    Point inTileOrigin;
    int16_t absTileHeight;
    int16_t absTileWidth;
    Point absTileOrigin;
    int16_t outTileHeight;
    int16_t outTileWidth;
    Point outTileOrigin;
    int16_t maskTileHeight;
    int16_t maskTileWidth;
    Point maskTileOrigin;
    void* descriptorParameters;
    char* errorString;
    void* channelPortProcs; ///< an older table with a different layout, not the suite
    ReadImageDocumentDesc* documentInfo;
    SPBasicSuite* sSPBasic;
    void* plugInRef;
    int32_t depth;
    Handle iCCprofileData;
    int32_t iCCprofileSize;
    int32_t canUseICCProfiles;
    int32_t hasImageScrap;
    void* bigDocumentData;
    void* input3DScene;
    void* output3DScene;
    Boolean createNewLayer;
    Handle iCCWorkingProfileData;
    int32_t iCCWorkingProfileSize;
    int64_t bufferSpace64;
    int64_t maxSpace64;
    Boolean allowOverrangeColors;
    uint8_t reserved[45];
};

#pragma pack(pop)

static_assert(offsetof(FilterRecord, imageSize) == 28);
static_assert(offsetof(FilterRecord, planes) == 32);
static_assert(offsetof(FilterRecord, filterRect) == 34);
static_assert(offsetof(FilterRecord, inRect) == 64);
static_assert(offsetof(FilterRecord, outRect) == 76);
static_assert(offsetof(FilterRecord, outData) == 100);
static_assert(offsetof(FilterRecord, maskRect) == 116);
static_assert(offsetof(FilterRecord, imageMode) == 156);
static_assert(offsetof(FilterRecord, wholeSize) == 172);
static_assert(offsetof(FilterRecord, platformData) == 216);
static_assert(offsetof(FilterRecord, filterCase) == 268);
static_assert(offsetof(FilterRecord, getPropertyObsolete) == 292);
static_assert(offsetof(FilterRecord, colorServices) == 320);
static_assert(offsetof(FilterRecord, inColumnBytes) == 368);
static_assert(offsetof(FilterRecord, maskTileOrigin) == 428);
static_assert(offsetof(FilterRecord, channelPortProcs) == 448);
static_assert(offsetof(FilterRecord, documentInfo) == 456);
static_assert(offsetof(FilterRecord, sSPBasic) == 464);
static_assert(offsetof(FilterRecord, plugInRef) == 472);
static_assert(offsetof(FilterRecord, depth) == 480);
static_assert(offsetof(FilterRecord, reserved) == 561);
static_assert(sizeof(FilterRecord) == 608);

} // namespace hostabi
