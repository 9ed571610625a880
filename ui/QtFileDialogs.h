// The open and save dialogs. Qt's own dialog, not the desktop's: only there does a change of the type reach
// the name at once, and it looks the same in every host.
#pragma once

#include "core/Platform/Dialogs.h"

#include <QString>

class CQtFileDialogs : public IFileDialogs {
public:
    std::wstring Ask(IWindow* pOwner, const TFileDialog& dialog) override;
};

/// A type's line in Qt's form, "text (*.a *.b)".
QString NameFilterOf(const TFileFilter& filter);
/// The name with the type's first ending in place of its own, if that is one of `dialog`'s; a name without an
/// ending stays without.
QString ReplaceExtension(const QString& strName, const TFileDialog& dialog, int nFilter);
/// The name with an ending: its own if the dialog knows it, else the chosen type's, else the default.
QString CompleteName(const QString& strName, const TFileDialog& dialog, int nFilter);
