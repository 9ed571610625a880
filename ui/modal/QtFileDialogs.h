// The open and save dialogs. Qt's own dialog instead of the desktop's: it updates the name at once when the
// type changes, and looks the same in every host.
#pragma once

#include "core/Platform/Dialogs.h"

#include <QString>

class CQtFileDialogs : public IFileDialogs {
public:
    std::wstring Ask(IWindow* pOwner, const TFileDialog& dialog) override;
};

/// A type's line in Qt's form, "text (*.a *.b)".
QString NameFilterOf(const TFileFilter& filter);
/// Replaces the name's extension, if it is one of `dialog`'s, by the type's first one.
QString ReplaceExtension(const QString& strName, const TFileDialog& dialog, int nFilter);
/// Completes the name's extension: its own if the dialog knows it, else the chosen type's, else the
/// default.
QString CompleteName(const QString& strName, const TFileDialog& dialog, int nFilter);
