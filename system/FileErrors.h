// Maps the system's error numbers to the failures that a user is told.
#pragma once

#include "core/Base/FileFailure.h"

/// `nError` is an errno value of an operation that reads a file.
EFileFailure ReadFailure(int nError);

/// The same for one that writes, in a folder that has room for no new file when a right is missing.
EFileFailure WriteFailure(int nError);
