#include "app/module/HostWindows.h"

CHostWindowsOff::CHostWindowsOff() = default;

CHostWindowsOff::~CHostWindowsOff() = default;
