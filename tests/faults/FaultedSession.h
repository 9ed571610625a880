// A scripted session in which one thing fails.
#pragma once

#include "tests/faults/Played.h"

/// What fails: one allocation or one operation on files, counted from 1 from the first line on; 0 for none.
struct TFault {
    uint64_t uAllocation = 0;
    uint64_t uFileOperation = 0;
};

/// Plays strokes of all tools, layer commands, undo and redo, views, panels and files.
TPlayed PlayFaulted(const TFault& fault);
