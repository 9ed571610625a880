#include "ui/input/NativePen.h"

#include "ui/base/QtText.h"

#include <QGuiApplication>

std::unique_ptr<INativePen> MakeNativePen(TNativePenEvents) { return nullptr; }

std::wstring GetPenSystem() { return FromQt(QGuiApplication::platformName()); }
