// The platform that the module provides for a session.
#pragma once

#include <functional>

struct TPlatform;

/// Creates the platform for one call of the host and passes it to `fn`: the window system, or the script's
/// player when the settings name a session script. Raises an exception when there is no window system.
void RunWithPlatform(const std::function<void(const TPlatform&)>& fn);
