// A clock of a slow machine.
#pragma once

#include "core/Platform/System.h"

/// Advances by a fixed number of milliseconds at each call.
struct CRunningClock : IClock {
    explicit CRunningClock(uint32_t u) : uPace(u) {}
    uint32_t GetTickCount() override { return uNow += uPace; }
    uint32_t uPace, uNow = 0;
};
