#include "ui/input/NativePen.h"

#include "ui/base/QtText.h"
#include "ui/input/win32/WintabPen.h"

#include <QGuiApplication>

#include <utility>

namespace {

bool HasRealWindows() { return QGuiApplication::platformName() == QLatin1String("windows"); }

} // namespace

std::unique_ptr<INativePen> MakeNativePen(TNativePenEvents events) {
    const auto spLibrary = HasRealWindows() ? CWintabLibrary::Load() : nullptr;
    return spLibrary ? std::make_unique<CWintabPen>(spLibrary, std::move(events)) : nullptr;
}

std::wstring GetPenSystem() {
    return HasRealWindows() ? L"Windows Ink" : FromQt(QGuiApplication::platformName());
}
