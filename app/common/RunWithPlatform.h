// The platform for a session inside a host.
#pragma once

#include <functional>

class CModule;
struct TPlatform;

/// Creates the platform for one call of the host and passes it to `fn`: the window system, or the script's
/// player when the settings name a session script. Raises internal_error when there is no window system.
void RunWithPlatform(CModule& module, const std::function<void(const TPlatform&)>& fn);
