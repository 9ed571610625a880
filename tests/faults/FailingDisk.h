// A failing disk: replaces the program's calls to the operating system.
#pragma once

#include "tests/faults/FailureCount.h"

/// Counts calls that open, read, write, flush and rename files or set their rights, and makes one of them
/// fail as on a full or broken disk.
using CFailingDisk = CFailing<struct TDiskKind>;
using CUnfailingDisk = CFailingDisk::CPause;
