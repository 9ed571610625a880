// Maps the system's error numbers to the failures that are reported to the user.
#pragma once

#include "core/Base/FileFailure.h"

/// `nError` is an errno value of an operation that reads a file.
EFileFailure ReadFailure(int nError);

/// The same for an operation that writes; a missing right then means that the folder takes no new file.
EFileFailure WriteFailure(int nError);
