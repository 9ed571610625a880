#include "ui/platform/EndSignals.h"

class CEndSignals::CState {};

CEndSignals::CEndSignals(std::function<void()>) {}

CEndSignals::~CEndSignals() = default;
