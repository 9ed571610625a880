// Maps the system's error numbers to the failures that are reported to the user.
#pragma once

#include "core/Base/FileFailure.h"

/// The number of the last failed file operation of this thread.
int LastFileError();

/// `nError` is the number of an operation that reads a file.
EFileFailure ReadFailure(int nError);

/// The same for an operation that writes; a missing right then means that the folder takes no new file.
EFileFailure WriteFailure(int nError);

/// True when the number means that there is no such file.
bool IsMissing(int nError);

/// True when the name of a new file is taken.
bool IsTaken(int nError);

/// True when the folder does not allow a new file or a rename.
bool IsFolderClosed(int nError);
