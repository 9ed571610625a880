// The clock of a played session: it moves only by Advance.
#pragma once

#include "core/Platform/System.h"

class CVirtualClock : public IClock {
public:
    uint32_t GetTickCount() override { return m_uNow; }
    /// Advances by `uMilliseconds`; wraps.
    void Advance(uint32_t uMilliseconds) { m_uNow += uMilliseconds; }

private:
    uint32_t m_uNow = 0;
};
