#include "app/module/KeepLoaded.h"

// The file itself says so (nodelete).
void KeepLoaded() {}
