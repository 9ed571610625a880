// Light and dark windows.
#pragma once

#include "core/Platform/Window.h"
#include "ui/base/DesktopScheme.h"

#include <boost/noncopyable.hpp>

class QPalette;

/// True when a palette's text is lighter than its ground.
bool IsDarkPalette(const QPalette& palette);

/// The desktop's bus; a connection that is not open when the process belongs to no desktop's session.
QDBusConnection FindDesktopBus();

/// The palette of an application object that was created here. The desktop's own palette is kept where it is
/// as light or dark as wanted.
class CQtTheme : boost::noncopyable {
public:
    explicit CQtTheme(const QDBusConnection& bus = FindDesktopBus());
    void Choose(ETheme theme);

private:
    void Apply();

    ETheme m_theme = ETheme::System;
    CDesktopScheme m_desktop;
};
