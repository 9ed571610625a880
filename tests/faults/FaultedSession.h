// A scripted session with one failure: strokes of all tools, layer commands, undo and redo, views, panels
// and files.
#pragma once

#include "tests/faults/Played.h"

/// Allocation number `uFail` fails, counted from 1 from the first line on; 0 for none. Files are in memory.
TPlayed PlayWithFailingMemory(uint64_t uFail);
/// File operation number `uFail` fails. The current folder becomes a temporary one of the session.
TPlayed PlayOnFailingDisk(uint64_t uFail);
