// Light and dark windows.
#pragma once

#include "core/Platform/Window.h"
#include "ui/base/DesktopScheme.h"

#include <boost/noncopyable.hpp>

class QPalette;

/// True when a palette's text is lighter than its ground.
bool IsDarkPalette(const QPalette& palette);

/// The palette of an application object that was created here. The desktop's own palette is kept where it is
/// as light or dark as wanted.
class CQtTheme : boost::noncopyable {
public:
    /// `fnWatch` begins to watch the desktop's preference.
    explicit CQtTheme(const std::function<decltype(WatchDesktopScheme)>& fnWatch = WatchDesktopScheme);
    void Choose(ETheme theme);

private:
    void Apply();

    ETheme m_theme = ETheme::System;
    const std::unique_ptr<IDesktopScheme> m_pDesktop;
};
