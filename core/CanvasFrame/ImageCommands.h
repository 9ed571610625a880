// The image menu: operations on the whole picture or a layer, each asked for by a dialog.
#pragma once

#include <span>

struct TImageRun;

/// The ids of these commands.
std::span<const int> GetImageCommands();

/// Opens the command's dialog and executes what the user accepts as one undoable action, with progress. True
/// when the canvas has changed. Raises cancelled_error, after which nothing has.
bool DoImageCommand(const TImageRun& run, int nId);
