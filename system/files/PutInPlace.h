// The last step of a replacement.
#pragma once

#include "system/files/OpenFile.h"

/// Closes the new file, which is complete and flushed, and renames it to `path` in the same folder, so that a
/// power failure leaves either the old or the new one there. `bReplaces`: there is an old file, whose
/// attributes stay as far as the system keeps them with a name. False with LastFileError() after a failure:
/// the old file is as it was.
bool PutInPlace(COpenFile& file, const std::filesystem::path& pathNew, const std::filesystem::path& path,
                bool bReplaces);
