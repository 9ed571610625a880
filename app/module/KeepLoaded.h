// Keeps the module in its host's process.
#pragma once

/// From the first session on the module stays loaded until the process exits, even if the host unloads it:
/// threads and objects of Qt and OpenMP cannot be ended.
void KeepLoaded();
