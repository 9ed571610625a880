// The image menu: operations on the whole picture or a layer, each asked for by a dialog.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <span>

struct TPlatform;

/// The ids of these commands.
std::span<const int> GetImageCommands();

/// Opens the command's dialog, owned by `pOwner`, and executes what the user accepts as one undoable action,
/// with progress. Complete strokes must have been merged. Returns true when the canvas has changed. Raises
/// cancelled_error, after which nothing has.
bool DoImageCommand(const boost::shared_ptr<CCanvasBuffer>& spCanvas, int nId, const TPlatform& platform,
                    IWindow* pOwner);
