// The process's one QApplication: ours, or that of a host which is a Qt program itself.
#pragma once

#include "core/Base/Geometry.h"

#include <vector>

class QFont;
class QWidget;

/// Creates the application object when the process has none. It stays for the life of a host, inside
/// which Qt does not support a restart. A host's own object is used as it is. Returns false when
/// windows cannot be shown from this thread: no display, an application object without widgets, or another
/// thread's.
bool EnsureApplication();
/// Destroys an object that was created here, at the end of a program that has no window left. With it Qt
/// hands the clipboard's content over to the desktop's clipboard manager, if there is one.
void EndApplication();
/// True when the application object was created here, so that its settings may be changed.
bool OwnsApplication();

/// True on a Wayland desktop, which decides alone where windows stand and tells no program of it: positions
/// of windows and positions on the screen have a meaning within one window only.
bool PlacesWindowsItself();

/// A font with the same families, completed by one that has the Japanese characters.
QFont WithJapanese(const QFont& font);
/// Sets the font and the icon of a top-level window, and keeps a host running when it is closed.
void PrepareTopLevel(QWidget& widget);
/// Moves a top-level window with its frame into its screen, and reduces it where it is larger. `vScreens`:
/// their work areas.
void FitToScreens(QWidget& window, const std::vector<CRect>& vScreens);
