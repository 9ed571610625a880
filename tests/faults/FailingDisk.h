// A disk that can fail: the program's own calls to the operating system.
#pragma once

#include "tests/faults/FailureCount.h"

/// Counts calls that open, read, write, flush and name files or set their rights, and lets one of them fail
/// as a full or broken disk does.
using CFailingDisk = CFailing<struct TDiskKind>;
using CUnfailingDisk = CFailingDisk::CPause;
