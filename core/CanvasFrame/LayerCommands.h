// The layer menu and the colour modes: commands that change a document's whole tree.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Commands/Commands.h"

#include <span>

/// The ids of these commands.
std::span<const int> GetLayerCommands();

/// Enabled when the command can change the canvas or its active layer; checked when it is the present state
/// (of clipping and the colour modes).
TCommandState GetLayerCommandState(CCanvasBuffer& canvas, int nId);

/// Executes the command as an undoable action and updates the selection; ignores one without an effect.
/// Returns true when the tree has changed. Raises cancelled_error, after which nothing has.
bool DoLayerCommand(const boost::shared_ptr<CCanvasBuffer>& spCanvas, int nId,
                    IProgress& progress = NoProgress());
