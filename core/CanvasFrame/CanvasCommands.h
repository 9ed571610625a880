// The commands that work on the active frame: its document, its view, its tool.
#pragma once

class CCommandTable;

/// Binds them. Without an active frame they are disabled and do nothing. Commands that nobody binds go to the
/// active tool.
void BindCanvasCommands(CCommandTable& table);
