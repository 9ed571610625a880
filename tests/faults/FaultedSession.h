// A scripted session in which one thing fails: strokes of all tools, layer commands, undo and redo, views,
// panels and files.
#pragma once

#include "tests/faults/Played.h"

/// Allocation number `uFail` fails, counted from 1 from the first line on; 0 lets none fail. Files are in
/// memory.
TPlayed PlayWithFailingMemory(uint64_t uFail);
/// Call number `uFail` for a file fails. The current folder becomes one that goes with the session.
TPlayed PlayOnFailingDisk(uint64_t uFail);
