// Memory that can run out: the program's own allocation functions.
#pragma once

#include "tests/faults/FailureCount.h"

/// Counts allocations and lets one of them fail.
using CFailingMemory = CFailing<struct TMemoryKind>;
using CUnfailingMemory = CFailingMemory::CPause;
