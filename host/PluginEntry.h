// What each selector of the host does.
#pragma once

#include <cstdint>
#include <functional>

struct TPlatform;

/// Makes the outside for one call and hands it to the function; one that cannot be made raises an exception.
using TWithPlatform = std::function<void(const std::function<void(const TPlatform&)>&)>;

/// Answers one call of the host. `pRecord` is what came with the selector and may be null, as may `pnResult`,
/// which only Start and unknown selectors touch. Only About and Start make an outside. Nothing is thrown:
/// what ends Start beyond its own guard gives memFullErr.
void RunSelector(int16_t nSelector, void* pRecord, int16_t* pnResult,
                 const TWithPlatform& withPlatform) noexcept;
