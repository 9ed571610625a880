// The process's one QApplication: ours, or that of a host which is a Qt program itself.
#pragma once

class QFont;

class QWidget;

/// Makes the application object when the process has none. It stays for the life of the process: Qt does not
/// like to be ended and begun again inside a host. A host's own object is used as it is. False when windows
/// cannot be shown from this thread: no display, an application object without widgets, or another thread's.
bool EnsureApplication();
/// True when the application object is ours, so that its settings may be changed.
bool OwnsApplication();

/// The font with a Japanese family behind its own, so that a CJK fallback takes Japanese letter forms.
QFont WithJapanese(const QFont& font);
/// What every top-level window of ours needs: the font and the icon, and no say in whether a host ends with
/// its last window.
void PrepareTopLevel(QWidget& widget);
