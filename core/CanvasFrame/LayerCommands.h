// The layer menu and the colour modes: commands that change a document's tree as a whole.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Commands/Commands.h"

#include <span>

/// The ids of this family.
std::span<const int> GetLayerCommands();

/// Whether the command can do something with the canvas and its active layer, and whether it is the present
/// state (of clipping and the colour modes).
TCommandState GetLayerCommandState(CCanvasBuffer& canvas, int nId);

/// Does the command, an undoable action, and moves the selection along; one that can do nothing does nothing.
/// Returns true when the tree has changed.
bool DoLayerCommand(const boost::shared_ptr<CCanvasBuffer>& spCanvas, int nId);
