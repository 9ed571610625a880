// The outside that the module gives to a session.
#pragma once

#include <functional>

struct TPlatform;

/// Makes the outside for one call of the host and hands it to `fn`: the window system, or, when the settings
/// name a session script, the script's player. Raises an exception when there is no window system.
void RunWithPlatform(const std::function<void(const TPlatform&)>& fn);
