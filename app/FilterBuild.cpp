#include "core/AppModule/AppModule.h"

const bool g_bFilterBuild = true;
