// The two function tables through which all pixels are transferred.
#pragma once

#include "host/Abi/Documents.h"

#include <cstddef>

namespace hostabi {

/// Acquires and releases the other suites.
struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, int32_t version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, int32_t version);
    SPBoolean (*IsEqual)(const char* token1, const char* token2);
    SPErr (*AllocateBlock)(size_t size, void** block);
    SPErr (*FreeBlock)(void* block);
    SPErr (*ReallocateBlock)(void* block, size_t newSize, void** newBlock);
    SPErr (*Undefined)();
};
static_assert(offsetof(SPBasicSuite, AcquireSuite) == 0);
static_assert(sizeof(SPBasicSuite) == 56);

constexpr char CHANNEL_PORTS_SUITE[] = "Photoshop ChannelPorts Suite for Plug-ins";
constexpr int32_t CHANNEL_PORTS_VERSION = 3;

/// Version 3. Only the two functions that are called have their arguments declared. Both may overwrite the
/// rectangle that they are given.
struct ChannelPortsSuite {
    using Slot = SPErr (*)();

    Slot CountLevels;
    Slot GetDepth;
    Slot GetDataBounds;
    Slot GetWriteLimit;
    Slot GetTilingGrid;
    Slot GetSupportRect;
    Slot GetDependentRect;
    Slot CanRead;
    Slot CanWrite;
    SPErr (*ReadPixelsFromLevel)(ChannelPort port, int32_t level, VRect* bounds,
                                 const PixelMemoryDesc* destination);
    SPErr (*WritePixelsToBaseLevel)(ChannelPort port, VRect* bounds, const PixelMemoryDesc* source);
    Slot ReadScaledPixels;
    Slot FindSourceForScaledRead;
    Slot New;
    Slot Dispose;
    Slot SupportsOperation;
    Slot ApplyOperation;
    Slot AddOperation;
    Slot RemoveOperation;
    Slot NewCopyOnWrite;
    Slot Freeze;
    Slot Restore;
};
static_assert(offsetof(ChannelPortsSuite, ReadPixelsFromLevel) == 72);
static_assert(offsetof(ChannelPortsSuite, WritePixelsToBaseLevel) == 80);
static_assert(sizeof(ChannelPortsSuite) == 176);

} // namespace hostabi
