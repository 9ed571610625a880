#include "app/common/ProcessSettings.h"

#include <windows.h>

#include <timeapi.h>

namespace {

constexpr UINT RESOLUTION_MS = 1;

} // namespace

// Timers of the pen and of dashes would else run with that of the system, up to 16 ms.
CProcessSettings::CProcessSettings() { timeBeginPeriod(RESOLUTION_MS); }

CProcessSettings::~CProcessSettings() { timeEndPeriod(RESOLUTION_MS); }
