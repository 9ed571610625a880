// Failing memory: replaces the program's allocation functions.
#pragma once

#include "tests/faults/FailureCount.h"

/// Counts allocations and makes one of them fail.
using CFailingMemory = CFailing<struct TMemoryKind>;
using CUnfailingMemory = CFailingMemory::CPause;
