// The millisecond clock of the machine.
#pragma once

#include "core/Platform/System.h"

#include <chrono>

class CTickClock : public IClock {
public:
    uint32_t GetTickCount() override {
        using namespace std::chrono;
        return static_cast<uint32_t>(
            duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
    }
};
