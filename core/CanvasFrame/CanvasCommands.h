// The commands for the active frame: its document, its view, its tool.
#pragma once

class CCommandTable;

/// Binds these commands. Without an active frame they are disabled and do nothing. Unbound commands are
/// passed to the active tool.
void BindCanvasCommands(CCommandTable& table);
