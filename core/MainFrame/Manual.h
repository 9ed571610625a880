// The manual: opened from the help menu, with the keys that the user has chosen.
#pragma once

#include <string>

class CShortcuts;
class IWindow;
struct TPlatform;

/// Puts keys into a page: the table of all commands that have one between `<!-- keys -->` and
/// `<!-- /keys -->`, and into every `<kbd data-command="NAME">` the first key of that command, unless one of
/// its keys stands there. Takes its own output as well.
std::string FillKeys(std::string strHtml, const CShortcuts& shortcuts);

/// Opens the manual or brings it to the front. `shortcuts` is read until the manual is closed. Raises
/// refused_error when it is not installed.
void ShowManual(const TPlatform& platform, IWindow& owner, const CShortcuts& shortcuts);
