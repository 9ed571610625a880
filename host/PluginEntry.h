// Handling of each selector of the host.
#pragma once

#include <cstdint>
#include <functional>

struct TPlatform;

/// Creates the platform for one call and passes it to the function; raises an exception when that fails.
using TWithPlatform = std::function<void(const std::function<void(const TPlatform&)>&)>;

/// Handles one call of the host. `pRecord` belongs to the selector and may be null, as may `pnResult`,
/// which only Start and unknown selectors write. Only About and Start create a platform. Nothing is thrown:
/// an exception that Start itself does not catch results in memFullErr.
void RunSelector(int16_t nSelector, void* pRecord, int16_t* pnResult,
                 const TWithPlatform& withPlatform) noexcept;
